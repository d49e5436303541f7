#pragma once

#include <QString>

class QWidget;

/// Works the application's windows as a user does: finds a control by the name that a screen reader says, and
/// sends it clicks and keys.
namespace quilmora::windowDriver {

/// The visible control of that name in any window; null when there is none.
QWidget *find(const QString &accessibleName);

/// Whether the control is there and can be used.
bool isReady(const QString &accessibleName);

/// Scrolls the control of that name into sight.
void reveal(const QString &accessibleName);

/// Scrolls the control into sight and clicks its middle. A click that opens a modal panel returns when that
/// closes.
void click(const QString &accessibleName);

/// Types `text` into the field of that name.
void type(const QString &accessibleName, const QString &text);

/// Whether a file panel is open.
bool filePanelIsOpen();

/// Names `path` in the open file panel and confirms it.
void answerFileDialog(const QString &path);

/// Whether the history is shown with the pictures of all covers in sight.
bool historyIsFilled();

/// Whether the history is not shown any more.
bool historyIsGone();

/// Clicks the first cover of the history.
void clickFirstCover();

/// Saves what the screen shows of the application's windows as a PNG file.
void saveScreenshot(const QString &path);

} // namespace quilmora::windowDriver
