#pragma once

#include <QStringList>

class QWidget;

namespace quilmora::test {

/// The texts that `widget` and what lies on it draw, in the order of drawing: also those that a component
/// draws itself and no screen reader is told of.
QStringList drawnTexts(QWidget *widget);

} // namespace quilmora::test
