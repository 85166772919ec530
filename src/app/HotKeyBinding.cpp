#include "app/HotKeyBinding.h"

#include "app/StringTable.h"
#include "desktop/ModHotKey.h"

namespace quillora
{

HotKeyBinding::HotKeyBinding(QObject* parent) : QObject(parent), m_key(GlobalHotKey::create())
{
    connect(m_key.get(), &GlobalHotKey::activated, this, &HotKeyBinding::activated);
    // A key held by another program has its own text, told before the reason arrives.
    connect(m_key.get(), &GlobalHotKey::keyTaken, this, [this] {
        m_taken = true;
        Q_EMIT problem(MsgHotKeyTaken);
    });
    connect(m_key.get(), &GlobalHotKey::unavailable, this, [this](const QString& reason) {
        qWarning("Global key F11 unavailable: %s", qPrintable(reason));
        if (!m_taken)
            Q_EMIT problem(MsgHotKeyOff);
    });
}

HotKeyBinding::~HotKeyBinding() = default;

void HotKeyBinding::bind()
{
    m_key->registerKey();
}

void HotKeyBinding::release()
{
    m_key->releaseKey();
}

} // namespace quillora
