// Measures how quickly an X11 window answers the window manager's _NET_WM_PING, from a process of its
// own so that the window's process cannot vouch for itself.
//
//   quillora-ping-probe <window id>
//
// Prints "ready" once it listens for answers, then pings every 20 ms until SIGTERM and
// prints "sent N answered M max_ms X", where X is the longest round trip, a ping still unanswered at the
// end counted by its age.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <poll.h>
#include <sys/resource.h>
#include <xcb/xcb.h>

namespace
{

volatile std::sig_atomic_t g_stop = 0;

double nowMs()
{
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

xcb_atom_t atom(xcb_connection_t* c, const char* name)
{
    xcb_intern_atom_reply_t* reply =
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, uint16_t(std::strlen(name)), name), nullptr);
    const xcb_atom_t a = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    std::free(reply);
    return a;
}

} // namespace

int main(int argc, char** argv)
{
    xcb_connection_t* c = xcb_connect(nullptr, nullptr);
    if (argc < 2 || xcb_connection_has_error(c)) {
        std::fprintf(stderr, "usage: %s <window id>, with an X server\n", argv[0]);
        return 2;
    }
    const auto window = xcb_window_t(std::strtoul(argv[1], nullptr, 0));
    // Above ordinary load where allowed, as the window's process is: the machine's load is not the window's.
    setpriority(PRIO_PROCESS, 0, -10);
    std::signal(SIGTERM, [](int) { g_stop = 1; });
    // Answers go to the root window with the StructureNotify mask.
    const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(c, xcb_setup_roots_iterator(xcb_get_setup(c)).data->root, XCB_CW_EVENT_MASK,
                                 &mask);
    xcb_client_message_event_t ping{};
    ping.response_type = XCB_CLIENT_MESSAGE;
    ping.format = 32;
    ping.window = window;
    ping.type = atom(c, "WM_PROTOCOLS");
    ping.data.data32[0] = atom(c, "_NET_WM_PING");
    ping.data.data32[2] = window;
    std::printf("ready\n");
    std::fflush(stdout);

    std::map<uint32_t, double> pending; // serial: when sent
    int sent = 0, answered = 0;
    double maxMs = 0, nextPing = nowMs();
    pollfd pfd{xcb_get_file_descriptor(c), POLLIN, 0};
    while (!g_stop && !xcb_connection_has_error(c)) {
        if (nowMs() >= nextPing) {
            ping.data.data32[1] = uint32_t(++sent);
            xcb_send_event(c, 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&ping));
            xcb_flush(c);
            pending[uint32_t(sent)] = nextPing = nowMs();
            nextPing += 20;
        }
        poll(&pfd, 1, int(nextPing - nowMs()) + 1);
        while (xcb_generic_event_t* e = xcb_poll_for_event(c)) {
            const auto* m = reinterpret_cast<xcb_client_message_event_t*>(e);
            const auto it = pending.find(m->data.data32[1]);
            if ((e->response_type & 0x7f) == XCB_CLIENT_MESSAGE && m->data.data32[0] == ping.data.data32[0] &&
                it != pending.end()) {
                maxMs = std::max(maxMs, nowMs() - it->second);
                ++answered;
                pending.erase(it);
            }
            std::free(e);
        }
    }
    for (const auto& [serial, start] : pending)
        maxMs = std::max(maxMs, nowMs() - start);
    std::printf("sent %d answered %d max_ms %.1f\n", sent, answered, maxMs);
    xcb_disconnect(c);
    return 0;
}
