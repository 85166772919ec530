#pragma once

#include "desktop/DesktopOpener.h"

#include <QObject>
#include <functional>

class QComboBox;
class QLabel;
class QPushButton;
class QWidget;

namespace quillora
{

// The address row below the text area: a web page address (`ucComText`, the last ten remembered) and
// `jcbutton1`, which opens the page translated by the service in the browser.
class WebPageBar : public QObject
{
    Q_OBJECT
public:
    using AddressFor = std::function<QString(const QString& typed)>; // the translated page's address
    using Opener = std::function<void(const QString& address, const OpenFailed& failed)>;

    WebPageBar(QWidget* parent, int left, int top, AddressFor addressFor, Opener open);

    void applyCaptions(int language);
    void setAddressText(const QString& text);
    // Lays the row out for its captions across `width`.
    void fit(int width);

Q_SIGNALS:
    // The translated page could not be opened, for the system's `reason`.
    void openFailed(const QString& reason);

private:
    void go();

    QLabel* m_label;
    QComboBox* m_address;
    QPushButton* m_go;
    AddressFor m_addressFor;
    Opener m_open;
};

} // namespace quillora
