#include "PaintLog.h"
#include "SceneRun.h"
#include "app/NavigationTab.h"
#include "gallery/ApplicationFixture.h"
#include "gallery/SceneResources.h"
#include "model/CoverInputs.h"
#include "screens/help/Toast.h"
#include "support/ScreenTest.h"
#include "support/ScriptedHttpServer.h"
#include "support/Texts.h"
#include "ui/dialogs/Sheet.h"
#include "ui/style/MenuStyle.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QFontMetricsF>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using gallery::ApplicationFixture;
using gallery::Scene;
using gallery::SceneResources;

namespace {

/// The scroll area whose content moves inside this widget; null when there is none.
QAbstractScrollArea *areaOf(QWidget *viewport)
{
    auto *area = qobject_cast<QAbstractScrollArea *>(viewport->parentWidget());
    return area != nullptr && area->viewport() == viewport ? area : nullptr;
}

/// Whether `inner` stays inside `outer`; up and down it need not where that scrolls.
bool isInside(const QRectF &inner, const QRectF &outer, bool scrolls)
{
    const bool across = inner.left() >= outer.left() && inner.right() <= outer.right();
    return across && (scrolls || (inner.top() >= outer.top() && inner.bottom() <= outer.bottom()));
}

QStringList placeFaults(QWidget *widget)
{
    QWidget *parent = widget->parentWidget();
    if (widget->isWindow() || isInside(widget->geometry(), parent->rect(), areaOf(parent) != nullptr)) {
        return {};
    }
    return {u"leaves its parent "_s + SceneRun::describe(parent)};
}

QStringList overlaps(QWidget *widget)
{
    // Inside a scroll area the bars lie over the content.
    if (qobject_cast<QAbstractScrollArea *>(widget) != nullptr) {
        return {};
    }
    QStringList faults;
    QList<QWidget *> before;
    for (QObject *object : widget->children()) {
        auto *child = qobject_cast<QWidget *>(object);
        if (child == nullptr || !child->isVisible() || child->isWindow() ||
            qobject_cast<Toast *>(child) != nullptr || qobject_cast<Sheet *>(child) != nullptr ||
            qobject_cast<MenuShadow *>(child) != nullptr) {
            continue;
        }
        for (const QWidget *other : before) {
            if (child->geometry().intersects(other->geometry())) {
                faults += SceneRun::describe(child) + u" lies over "_s + SceneRun::describe(other);
            }
        }
        before.append(child);
    }
    return faults;
}

QStringList sizeFaults(const QWidget *widget)
{
    const bool shows = qobject_cast<const QAbstractButton *>(widget) != nullptr ||
                       qobject_cast<const QLabel *>(widget) != nullptr;
    QSize needed = widget->minimumSizeHint();
    if (widget->hasHeightForWidth()) {
        needed.setHeight(widget->heightForWidth(widget->width()));
    } else if (shows) {
        needed = widget->sizeHint();
    }
    if (widget->width() >= needed.width() && widget->height() >= needed.height()) {
        return {};
    }
    return {u"needs %1 x %2"_s.arg(needed.width()).arg(needed.height())};
}

QStringList textFaults(QWidget *widget)
{
    // What does not fit into a field scrolls with the cursor.
    if (qobject_cast<QLineEdit *>(widget) != nullptr) {
        return {};
    }
    QStringList faults;
    const bool scrolls = areaOf(widget) != nullptr;
    const QRectF bounds = QRectF{widget->rect()}.adjusted(-1, -1, 1, 1);
    for (const PaintLog::Text &drawn : PaintLog::of(widget).texts) {
        if (!drawn.ink.isEmpty() && !isInside(drawn.ink, bounds, scrolls)) {
            faults += u"truncates \"%1\" %2"_s.arg(drawn.text.left(20), SceneRun::describe(drawn.ink));
        }
    }
    return faults;
}

QStringList scrollFaults(const QWidget *widget)
{
    const auto *area = qobject_cast<const QAbstractScrollArea *>(widget);
    const int reach = area != nullptr ? area->horizontalScrollBar()->maximum() : 0;
    return reach > 0 ? QStringList{u"scrolls sideways by %1"_s.arg(reach)} : QStringList{};
}

/// What is wrong with the place of a visible widget: it leaves its parent, lies over a sibling, is smaller
/// than what it shows, truncates a text without an ellipsis, or scrolls sideways. One line for each fault.
QStringList layoutFaults(QWidget *widget)
{
    QStringList faults = placeFaults(widget) + overlaps(widget) + sizeFaults(widget) + textFaults(widget) +
                         scrollFaults(widget);
    for (QString &fault : faults) {
        fault = SceneRun::describe(widget) + u": "_s + fault;
    }
    return faults;
}

constexpr qsizetype longestAddress = 300;

struct LongText {
    QString name;
    QString text;
};

const QList<LongText> &longTexts()
{
    static const QList<LongText> all{
        {u"chinese"_s, u"把一件很小的事情坚持做上整整一千天以后你会看到一个完全不同的自己，"_s.repeated(20)},
        {u"latin"_s, u"The extraordinarily long and incomprehensible description of it all, "_s.repeated(20)},
        {u"one-word"_s, u"Donaudampfschifffahrtselektrizitaeten"_s.repeated(30)},
    };
    return all;
}

void fillForm(ApplicationFixture &stage, SceneResources &resources, const QString &text)
{
    stage.open();
    stage.click(Emotion::presets().constLast().name);
    for (const QString &field : {texts::title, texts::scene, texts::customExpression, texts::instructions}) {
        stage.type(field, text);
    }
    stage.upload(texts::facePhoto, resources.hugePhoto());
    stage.upload(texts::stylePicture, resources.sampleCover());
}

void fail(ApplicationFixture &stage, SceneResources & /*resources*/, const QString &text)
{
    const ScriptedHttpServer server{[text](const ReceivedRequest &) {
        return ScriptedResponse::whole(text.toUtf8(), "502 Bad Gateway");
    }};
    stage.configure(server.url(), SceneResources::key());
    stage.open();
    stage.type(texts::title, u"标题"_s);
    stage.click(texts::start);
    stage.waitFor(texts::back);
}

void listCovers(ApplicationFixture &stage, SceneResources &resources, const QString &text)
{
    const QString file = resources.cover(u"标题"_s, u"森林"_s, {640, 360});
    QList<ApplicationFixture::Cover> covers;
    for (int number = 0; number < 6; ++number) {
        covers.append({text, number % 2 == 0 ? file : QString{}, 1.7e9 - number, text});
    }
    stage.addCovers(covers);
    stage.open();
    stage.click(texts::history);
}

void fillSettings(ApplicationFixture &stage, SceneResources & /*resources*/, const QString &text)
{
    stage.open();
    stage.click(NavigationTab{NavigationTab::settings}.rawValue());
    for (const QString &field : texts::settings) {
        stage.type(field, text);
    }
}

void copyAddress(ApplicationFixture &stage, SceneResources & /*resources*/, const QString &text)
{
    stage.setAddresses(text, text);
    stage.open();
    stage.click(NavigationTab{NavigationTab::help}.rawValue());
    stage.click(u"客服邮箱："_s + text);
}

/// Screens with texts that are far longer than usual, Chinese and Latin, with and without places to break.
QList<Scene> longScenes()
{
    QList<Scene> scenes;
    for (const LongText &longText : longTexts()) {
        const auto add = [&](const QString &what, auto prepare, qsizetype length = -1,
                             const std::function<void(ApplicationFixture &)> &finish = {}) {
            scenes.append({what + u'-' + longText.name,
                           {},
                           Scene::Sizes::common,
                           {},
                           [prepare, words = longText.text.left(length)](ApplicationFixture &stage,
                                                                         SceneResources &resources) {
                               prepare(stage, resources, words);
                           },
                           finish});
        };
        add(u"form"_s, fillForm);
        add(u"error"_s, fail);
        add(u"short-error"_s, fail, 90);
        add(u"history"_s, listCovers);
        add(u"preview"_s, listCovers, -1, [](ApplicationFixture &stage) { stage.openCover(0); });
        add(u"settings"_s, fillSettings, -1,
            [](ApplicationFixture &stage) { stage.click(texts::saveSettings); });
        add(u"help"_s, copyAddress, longestAddress);
    }
    return scenes;
}

/// In percent.
constexpr int wide = 130;

double widthOf(const QFont &font) { return QFontMetricsF{font}.horizontalAdvance(u"封面 Quilmora"_s); }

} // namespace

/// Every screen in the smallest window that the display allows: with the usual texts and with very long ones,
/// in the usual font and in one that is much wider.
class LayoutTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setCursorFlashTime(0);
        m_usualFont = QApplication::font();
    }

    void cleanup() { QApplication::setFont(m_usualFont); }
    void nothingIsTruncatedOrCovered_data() { SceneRun::addRows(scenes()); }

    void nothingIsTruncatedOrCovered() { QCOMPARE(faults(), 0); }

    void nothingIsTruncatedOrCoveredInAWideFont_data() { SceneRun::addRows(scenes()); }

    void nothingIsTruncatedOrCoveredInAWideFont()
    {
        QFont font = m_usualFont;
        font.setStretch(wide);
        QVERIFY(widthOf(font) > 1.25 * widthOf(m_usualFont));
        QApplication::setFont(font);
        QCOMPARE(faults(), 0);
    }

private:
    static QList<gallery::Scene> scenes() { return gallery::allScenes() + longScenes(); }

    /// How much is wrong with the scene of the row; says what.
    static qsizetype faults()
    {
        SceneRun run{SceneRun::current(scenes())};
        run.show(run.stage.window()->minimumSize());
        qsizetype count = 0;
        for (QWidget *widget : run.widgets()) {
            for (const QString &fault : layoutFaults(widget)) {
                qWarning("%s", qUtf8Printable(fault));
                ++count;
            }
        }
        return count;
    }

    QFont m_usualFont;
};

QUILMORA_TEST(LayoutTest, runScreenTest)
#include "LayoutTest.moc"
