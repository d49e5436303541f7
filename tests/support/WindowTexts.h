#pragma once

#include <QStringList>

class QWidget;

namespace quilmora::test {

/// Every text in a window that anybody could come by: what is drawn, what every piece is told about itself
/// (its properties), and what assistive programs can ask for, each in every way they can ask. Only the
/// content of a masked field, which is the user's, is left out of its properties.
QStringList windowTexts(QWidget *window);

} // namespace quilmora::test
