#include "gallery/ApplicationFixture.h"

#include "app/QuilmoraApp.h"
#include "platform/Files.h"
#include "screens/history/HistoryGrid.h"
#include "store/ImageStorageService.h"
#include "support/AccessibleFinder.h"
#include "support/DatabaseFile.h"
#include "support/HistoryRows.h"
#include "support/ScreenTest.h"
#include "ui/dialogs/Sheet.h"

#include <QAbstractButton>
#include <QAction>
#include <QFile>
#include <QMenu>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVariantAnimation>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quilmora::gallery {
namespace {

constexpr int patience = 60'000;
constexpr int roomAround = 40;

QString databaseFolder() { return userFolders::applicationSupport() + u"/Quilmora"_s; }

} // namespace

ApplicationFixture::ApplicationFixture()
    : m_database{databaseFolder(), coversFolder::path()},
      m_storage{coversFolder::path()}
{
    // Long enough for every picture.
    m_help.toastStay = 1h;
}

ApplicationFixture::~ApplicationFixture() = default;

void ApplicationFixture::configure(const QUrl &service, const QString &key)
{
    m_database.saveConfig(service.toString(), key, VolcengineConfig::defaultModelID());
}

void ApplicationFixture::setAddresses(const QString &email, const QString &website)
{
    m_help.email = email;
    m_help.website = website;
}

void ApplicationFixture::addCovers(const QList<Cover> &covers)
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

void ApplicationFixture::open()
{
    m_view = std::make_unique<MainView>([this](NavigationTab tab, QWidget *parent) {
        return makeScreen(tab, {m_database, m_storage, m_generator, m_panels, m_thumbnails, m_help}, parent);
    });
    test::showWindow(*m_view, m_view->minimumSize());
}

QWidget *ApplicationFixture::overlay() const
{
    QWidget *menu = QApplication::activePopupWidget();
    return menu != nullptr ? menu : test::openSheet();
}

QWidget *ApplicationFixture::front() const
{
    QWidget *above = overlay();
    return above != nullptr ? above : m_view.get();
}

QWidget *ApplicationFixture::find(const QString &name) const { return test::accessible::find(front(), name); }

void ApplicationFixture::waitUntil(const char *what, const std::function<bool()> &condition)
{
    if (!QTest::qWaitFor(condition, patience)) {
        qFatal("This does not come to pass: %s", what);
    }
}

void ApplicationFixture::waitFor(const QString &name)
{
    waitUntil(qUtf8Printable(name), [&] { return find(name) != nullptr; });
}

void ApplicationFixture::click(const QString &name)
{
    QAbstractButton *button = nullptr;
    waitUntil(qUtf8Printable(name), [&] {
        button = test::accessible::find<QAbstractButton>(front(), name);
        return button != nullptr && button->isEnabled();
    });
    test::click(button);
}

void ApplicationFixture::type(const QString &field, const QString &text)
{
    waitFor(field);
    test::typeInto(test::accessible::findField(m_view.get(), field), text);
}

void ApplicationFixture::upload(const QString &card, const QString &path)
{
    m_panels.answerReference(path);
    click(card);
}

HistoryGrid *ApplicationFixture::grid() const { return m_view->findChild<HistoryGrid *>(); }

void ApplicationFixture::openCover(int position)
{
    waitUntil("the history", [this] { return grid() != nullptr; });
    const QRect tile = grid()->visualRect(grid()->model()->index(position, 0));
    QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {}, tile.center());
    waitForOverlay();
}

void ApplicationFixture::press(const QKeySequence &keys)
{
    QTest::keySequence(QApplication::focusWidget(), keys);
}

void ApplicationFixture::openMenu(const QString &text, const QString &command)
{
    QWidget *field = test::accessible::findField(m_view.get(), text);
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

void ApplicationFixture::waitForOverlay()
{
    waitUntil("the sheet or menu",
              [this] { return overlay() != nullptr && overlay()->window()->windowHandle()->isExposed(); });
}

void ApplicationFixture::dismissOverlay()
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

QScrollArea *ApplicationFixture::page() const { return m_view->findChild<QScrollArea *>(); }

void ApplicationFixture::resize(QSize size)
{
    m_view->resize(size);
    waitUntil("the new size", [&] { return m_view->windowHandle()->size() == size; });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCoreApplication::processEvents();
}

void ApplicationFixture::show(QSize size, const QString &name)
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

void ApplicationFixture::showWhole(int width)
{
    resize({width, m_view->minimumHeight()});
    resize({width, m_view->height() + page()->verticalScrollBar()->maximum()});
}

void ApplicationFixture::settle()
{
    if (grid() != nullptr) {
        // Drawn at least once, so that what changed has been seen.
        grid()->viewport()->repaint();
        waitUntil("the pictures of the history", [this] { return grid()->isFilled(); });
    }
    waitUntil("the end of all animations", [this] {
        const auto animations = m_view->findChildren<QVariantAnimation *>();
        return std::none_of(animations.begin(), animations.end(), [](const QVariantAnimation *animation) {
            return animation->state() == QAbstractAnimation::Running;
        });
    });
}

QImage ApplicationFixture::picture() const
{
    QWidget *above = overlay();
    if (above == nullptr || !above->isWindow()) {
        return m_view->grab().toImage();
    }
    const QRect whole = m_view->geometry() | above->geometry();
    const double ratio = m_view->devicePixelRatioF();
    QImage picture{(QSizeF{whole.size()} * ratio).toSize(), QImage::Format_ARGB32_Premultiplied};
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter{&picture};
    for (QWidget *shown : {static_cast<QWidget *>(m_view.get()), above}) {
        painter.drawPixmap(shown->geometry().topLeft() - whole.topLeft(), shown->grab());
    }
    return picture;
}

} // namespace quilmora::gallery
