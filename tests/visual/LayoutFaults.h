#pragma once

#include <QStringList>

class QWidget;

namespace quilmora::test {

/// What is wrong with the place of a visible widget: it leaves its parent, lies over a sibling, is smaller
/// than what it shows, truncates a text without an ellipsis, or scrolls sideways. One line for each fault.
QStringList layoutFaults(QWidget *widget);

} // namespace quilmora::test
