// Feeds every file under the folders (or the files) named on the command line to the fuzz target's
// entry point once, so that any compiler's build replays the seeds and the crashes found so far.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv)
{
    namespace fs = std::filesystem;
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        const fs::path path(argv[i]);
        if (fs::is_directory(path)) {
            for (const auto& entry : fs::recursive_directory_iterator(path)) {
                if (entry.is_regular_file())
                    inputs.push_back(entry.path());
            }
        } else if (fs::is_regular_file(path)) {
            inputs.push_back(path);
        }
    }
    // An empty or mistyped corpus folder must not pass as a clean replay.
    if (inputs.empty()) {
        std::cerr << "no inputs to replay\n";
        return 1;
    }
    std::sort(inputs.begin(), inputs.end());
    for (const fs::path& path : inputs) {
        std::cout << path.string() << std::endl;
        std::ifstream in(path, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    }
    std::cout << "replayed " << inputs.size() << " inputs\n";
    return 0;
}
