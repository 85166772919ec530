#pragma once

#include <QObject>
#include <memory>

namespace quillora
{

class GlobalHotKey;

// F11 for the window: pressing it is activated(); a key that could not be had is told once, as the
// offset of the status-line text that says why.
class HotKeyBinding : public QObject
{
    Q_OBJECT
public:
    explicit HotKeyBinding(QObject* parent = nullptr);
    ~HotKeyBinding() override;
    void bind();
    void release();

Q_SIGNALS:
    void activated();
    void problem(int textOffset);

private:
    std::unique_ptr<GlobalHotKey> m_key;
    bool m_taken = false;
};

} // namespace quillora
