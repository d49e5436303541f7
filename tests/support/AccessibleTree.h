#pragma once

#include <QStringList>

class QWidget;

namespace quilmora::test {

/// What a screen reader is told of a window: a line for each visible piece, indented below its parent, as in
/// `  RadioButton "经典" (4:3) [checkable checked focusable]`. The text of a field follows after "=". Pieces
/// without name, text or visible children, which are there for the layout only, are left out, and so is
/// `hidden` with all that is in it.
QStringList accessibleTree(QWidget *root, const QWidget *hidden = nullptr);

} // namespace quilmora::test
