#include "gallery/Stage.h"

#include "generation/CoverGenerationFlow.h"
#include "platform/UserFolders.h"
#include "screens/common/Sheet.h"
#include "screens/generate/GenerateCoverView.h"
#include "screens/help/HelpView.h"
#include "screens/history/HistoryGrid.h"
#include "screens/history/HistoryListView.h"
#include "screens/settings/SettingsView.h"
#include "store/CoversFolder.h"
#include "support/AccessibleFinder.h"
#include "support/DatabaseFile.h"
#include "support/HistoryRows.h"
#include "support/ScreenTest.h"

#include <QAbstractButton>
#include <QAction>
#include <QFile>
#include <QMenu>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QVariantAnimation>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quilmora::gallery
{
namespace
{

constexpr int patience = 60'000;
constexpr int roomAround = 40;

QString databaseFolder()
{
    return userFolders::applicationSupport() + u"/Quilmora"_s;
}

} // namespace

Stage::Stage() : database{databaseFolder(), coversFolder::path()}, storage{coversFolder::path()}
{
    // Long enough for every picture.
    help.toastStay = 1h;
}

Stage::~Stage() = default;

QWidget *Stage::makeScreen(NavigationTab tab, QWidget *parent)
{
    switch (tab) {
    case NavigationTab::generate:
        return new GenerateCoverView{CoverGenerationFlow::create(database, storage, generator), panels,
                                     parent};
    case NavigationTab::history:
        return new HistoryListView{database, panels, thumbnails, parent};
    case NavigationTab::settings:
        return new SettingsView{database, parent};
    case NavigationTab::help:
        return new HelpView{help, parent};
    }
    Q_UNREACHABLE();
}

void Stage::configure(const QUrl &service, const QString &key)
{
    database.saveConfig(service.toString(), key, VolcengineConfig::defaultModelID());
}

void Stage::setAddresses(const QString &email, const QString &website)
{
    help.email = email;
    help.website = website;
}

void Stage::addCovers(const QList<Cover> &covers)
{
    QString sql = u"BEGIN;"_s;
    int number = 0;
    for (const Cover &cover : covers) {
        const QString name = u"cover_%1.png"_s.arg(++number);
        if (!cover.file.isEmpty() && !QFile::copy(cover.file, coversFolder::path() + u'/' + name)) {
            qFatal("Cannot copy %s", qUtf8Printable(cover.file));
        }
        sql += test::historyRows::insertion(cover.prompt, coversFolder::storedPath(name), cover.createdAt,
                                            cover.modelID);
    }
    test::databaseFile::run(databaseFolder() + u"/quilmora.db"_s, QString{sql + u"COMMIT;"_s}.toUtf8());
}

void Stage::open()
{
    view = std::make_unique<MainView>(
        [this](NavigationTab tab, QWidget *parent) { return makeScreen(tab, parent); });
    test::showWindow(*view, view->minimumSize());
}

QWidget *Stage::overlay() const
{
    QWidget *menu = QApplication::activePopupWidget();
    return menu != nullptr ? menu : test::openSheet();
}

QWidget *Stage::front() const
{
    QWidget *above = overlay();
    return above != nullptr ? above : view.get();
}

QWidget *Stage::find(const QString &name) const
{
    return test::accessible::find(front(), name);
}

void Stage::waitUntil(const char *what, const std::function<bool()> &condition)
{
    if (!QTest::qWaitFor(condition, patience)) {
        qFatal("This does not come to pass: %s", what);
    }
}

void Stage::waitFor(const QString &name)
{
    waitUntil(qUtf8Printable(name), [&] { return find(name) != nullptr; });
}

void Stage::click(const QString &name)
{
    QAbstractButton *button = nullptr;
    waitUntil(qUtf8Printable(name), [&] {
        button = test::accessible::find<QAbstractButton>(front(), name);
        return button != nullptr && button->isEnabled();
    });
    test::click(button);
}

void Stage::type(const QString &field, const QString &text)
{
    waitFor(field);
    test::typeInto(test::accessible::findField(view.get(), field), text);
}

void Stage::upload(const QString &card, const QString &path)
{
    panels.answerReference(path);
    click(card);
}

HistoryGrid *Stage::grid() const
{
    return view->findChild<HistoryGrid *>();
}

void Stage::openCover(int position)
{
    waitUntil("the history", [this] { return grid() != nullptr; });
    const QRect tile = grid()->visualRect(grid()->model()->index(position, 0));
    QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {}, tile.center());
    waitForOverlay();
}

void Stage::press(const QKeySequence &keys)
{
    QTest::keySequence(QApplication::focusWidget(), keys);
}

void Stage::openMenu(const QString &text, const QString &command)
{
    QWidget *field = test::accessible::findField(view.get(), text);
    QMenu *menu = test::openMenu(field != nullptr ? field : find(text));
    waitForOverlay();
    const QList<QAction *> actions = menu->actions();
    const auto action = std::find_if(actions.begin(), actions.end(), [&](const QAction *listed) {
        return listed->text().startsWith(command);
    });
    if (action == actions.end()) {
        qFatal("The menu has no %s", qUtf8Printable(command));
    }
    // Chosen by keyboard, the focus would leave the field. An open menu ignores the first few movements, and
    // Qt 6.8 delivers none that goes to where the mouse is.
    const QPoint center = menu->actionGeometry(*action).center();
    int offset = 0;
    waitUntil(qUtf8Printable(command), [&] {
        offset = 1 - offset;
        QTest::mouseMove(menu, center + QPoint{offset, 0});
        return menu->activeAction() == *action;
    });
}

void Stage::waitForOverlay()
{
    waitUntil("the sheet or menu",
              [this] { return overlay() != nullptr && overlay()->window()->windowHandle()->isExposed(); });
}

void Stage::dismissOverlay()
{
    if (QWidget *above = overlay(); above != nullptr) {
        if (qobject_cast<QMenu *>(above) != nullptr) {
            QTest::mousePress(above, Qt::LeftButton, {}, {-1, -1});
        } else {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        }
        waitUntil("the end of the sheet or menu", [this] { return overlay() == nullptr; });
    }
}

QScrollArea *Stage::page() const
{
    return view->findChild<QScrollArea *>();
}

void Stage::resize(QSize size)
{
    view->resize(size);
    waitUntil("the new size", [&] { return view->windowHandle()->size() == size; });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCoreApplication::processEvents();
}

void Stage::show(QSize size, const QString &name)
{
    resize(size);
    if (page() != nullptr) {
        page()->verticalScrollBar()->setValue(0);
        if (!name.isEmpty()) {
            waitFor(name);
            page()->ensureWidgetVisible(find(name), 0, roomAround);
        }
    }
}

void Stage::showWhole(int width)
{
    resize({width, view->minimumHeight()});
    resize({width, view->height() + page()->verticalScrollBar()->maximum()});
}

void Stage::settle()
{
    if (grid() != nullptr) {
        // Drawn at least once, so that what changed has been seen.
        grid()->viewport()->repaint();
        waitUntil("the pictures of the history", [this] { return grid()->isFilled(); });
    }
    waitUntil("the end of all animations", [this] {
        const auto animations = view->findChildren<QVariantAnimation *>();
        return std::none_of(animations.begin(), animations.end(), [](const QVariantAnimation *animation) {
            return animation->state() == QAbstractAnimation::Running;
        });
    });
}

QImage Stage::picture() const
{
    QWidget *above = overlay();
    if (above == nullptr || !above->isWindow()) {
        return view->grab().toImage();
    }
    const QRect whole = view->geometry() | above->geometry();
    const double ratio = view->devicePixelRatioF();
    QImage picture{(QSizeF{whole.size()} * ratio).toSize(), QImage::Format_ARGB32_Premultiplied};
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter{&picture};
    for (QWidget *shown : {static_cast<QWidget *>(view.get()), above}) {
        painter.drawPixmap(shown->geometry().topLeft() - whole.topLeft(), shown->grab());
    }
    return picture;
}

} // namespace quilmora::gallery
