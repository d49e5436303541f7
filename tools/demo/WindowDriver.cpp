#include "WindowDriver.h"

#include "screens/history/HistoryGrid.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace quilmora::windowDriver {
namespace {

QFileDialog *filePanel() { return qobject_cast<QFileDialog *>(QApplication::activeModalWidget()); }

void scrollIntoSight(QWidget *control)
{
    for (QWidget *above = control->parentWidget(); above != nullptr; above = above->parentWidget()) {
        if (auto *area = qobject_cast<QScrollArea *>(above)) {
            area->ensureWidgetVisible(control, 0, 80);
        }
    }
}

HistoryGrid *historyGrid()
{
    for (QWidget *widget : QApplication::allWidgets()) {
        if (auto *grid = qobject_cast<HistoryGrid *>(widget); grid != nullptr && grid->isVisible()) {
            return grid;
        }
    }
    return nullptr;
}

} // namespace

QWidget *find(const QString &accessibleName)
{
    for (QWidget *widget : QApplication::allWidgets()) {
        if (widget->accessibleName() == accessibleName && widget->isVisible() &&
            widget->focusPolicy() != Qt::NoFocus) {
            return widget;
        }
    }
    return nullptr;
}

bool isReady(const QString &accessibleName)
{
    const QWidget *control = find(accessibleName);
    return control != nullptr && control->isEnabled() && control->window()->windowHandle()->isExposed();
}

void reveal(const QString &accessibleName) { scrollIntoSight(find(accessibleName)); }

void click(const QString &accessibleName)
{
    QWidget *control = find(accessibleName);
    scrollIntoSight(control);
    QTest::mouseClick(control, Qt::LeftButton, {}, control->rect().center());
}

void type(const QString &accessibleName, const QString &text)
{
    QWidget *field = find(accessibleName);
    scrollIntoSight(field);
    QTest::mouseClick(field, Qt::LeftButton, {}, field->rect().center());
    for (const QChar character : text) {
        QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString{character}, Qt::NoModifier);
    }
}

bool filePanelIsOpen()
{
    const QFileDialog *panel = filePanel();
    return panel != nullptr && panel->windowHandle() != nullptr && panel->windowHandle()->isExposed();
}

void answerFileDialog(const QString &path)
{
    QFileDialog *panel = filePanel();
    // Set at once: typed, it would bring up a list of suggestions, which takes the next key or click for
    // itself.
    panel->findChild<QLineEdit *>()->setText(path);
    const auto kind =
        panel->acceptMode() == QFileDialog::AcceptSave ? QDialogButtonBox::Save : QDialogButtonBox::Open;
    QTest::mouseClick(panel->findChild<QDialogButtonBox *>()->button(kind), Qt::LeftButton);
}

bool historyIsFilled()
{
    const HistoryGrid *grid = historyGrid();
    return grid != nullptr && grid->isFilled();
}

bool historyIsGone() { return historyGrid() == nullptr; }

void clickFirstCover()
{
    HistoryGrid *grid = historyGrid();
    const QPoint place = grid->visualRect(grid->model()->index(0, 0)).center();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, place);
}

void saveScreenshot(const QString &path)
{
    const QWidget *window = QApplication::activeWindow();
    QScreen *screen = window == nullptr ? QGuiApplication::primaryScreen() : window->screen();
    QRect area;
    for (QWidget *shown : QApplication::topLevelWidgets()) {
        if (shown->isVisible()) {
            shown->repaint();
        }
        area = shown->isVisible() ? area.united(shown->frameGeometry()) : area;
    }
    area = area.intersected(screen->geometry());
    const QPixmap shot = screen->grabWindow(0, area.x(), area.y(), area.width(), area.height());
    if (!shot.save(path)) {
        qWarning("Cannot write %s", qUtf8Printable(path));
    }
}

} // namespace quilmora::windowDriver
