#pragma once

#include <QColor>
#include <QFont>
#include <QList>

#include "app/Settings.h"

class QWidget;

namespace quillora {

QFont toQFont(const FontSetting& setting);
QColor toQColor(quint32 colorBgr);
FontSetting fromQFont(const QFont& font, const QColor& color, int charset);

// Gives the boxes the stored font and colour (done once, at start).
void ApplyFont(const FontSetting& setting, const QList<QWidget*>& boxes);
// The font chooser (face, weight, italic, size up to 72, charset, underline, strike-out, colour).
// Returns the chosen setting, or `current` unchanged when cancelled.
FontSetting ChooseFontFor(const FontSetting& current, QWidget* parent);

} // namespace quillora
