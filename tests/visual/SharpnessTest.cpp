#include "PaintLog.h"
#include "SceneRun.h"
#include "screens/generate/LoadingSection.h"
#include "screens/history/HistoryGrid.h"
#include "support/ScreenTest.h"
#include "ui/dialogs/Sheet.h"
#include "ui/style/MenuStyle.h"
#include "ui/widgets/ShadowHost.h"

#include <QAbstractScrollArea>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// Neither side comes out even at any of the resolutions.
constexpr QSize oddSize{1003, 703};

bool isWhole(double pixels) { return std::abs(pixels - std::round(pixels)) < 0.02; }

bool isOnPixels(const PaintLog::Picture &picture)
{
    return isWhole(picture.place.x()) && isWhole(picture.place.y()) &&
           std::abs(picture.place.width() - picture.source.width()) < 0.02 &&
           std::abs(picture.place.height() - picture.source.height()) < 0.02;
}

/// The outer side of a focus ring is clipped, so the inner one counts. At whole resolutions a line may
/// have any width; its outer side counts then.
bool isOnPixels(const PaintLog::Edge &edge, double ratio)
{
    const double width = std::abs(edge.outer - edge.inner);
    return isWhole(edge.inner) || (isWhole(edge.outer) && isWhole(ratio) && !isWhole(width));
}

/// Whether the side away from the middle is beyond what the widget can draw on. Marks of the focus are
/// clipped to half on purpose; they are thicker than all other lines.
bool isClipped(const PaintLog::Edge &edge, const PaintLog &record, double ratio)
{
    constexpr double thickest = 2;
    const double low = edge.isUpright ? record.bounds.left() : record.bounds.top();
    const double high = edge.isUpright ? record.bounds.right() : record.bounds.bottom();
    return std::abs(edge.outer - edge.inner) <= thickest * ratio &&
           (edge.outer < low - 0.02 || edge.outer > high + 0.02);
}

/// Whether the edge of a filled shape lies below the middle of the line around it.
bool isUnderALine(const PaintLog::Edge &edge, const PaintLog &record)
{
    return edge.outer == edge.inner &&
           std::any_of(record.edges.begin(), record.edges.end(), [&](const PaintLog::Edge &other) {
               return other.outer != other.inner && other.shape == edge.shape;
           });
}

QStringList complaintsAbout(QWidget *widget)
{
    // Turns all the time.
    if (qobject_cast<ProgressSpinner *>(widget) != nullptr) {
        return {};
    }
    const double ratio = widget->devicePixelRatioF();
    const PaintLog record = PaintLog::of(widget);
    QStringList complaints;
    // Shadows are soft.
    const bool drawsShadows = dynamic_cast<ShadowHost *>(widget) != nullptr ||
                              dynamic_cast<Sheet *>(widget) != nullptr ||
                              dynamic_cast<MenuShadow *>(widget) != nullptr;
    for (const PaintLog::Picture &picture : record.pictures) {
        if (!drawsShadows && !isOnPixels(picture)) {
            complaints += u"a picture of %1 x %2 pixels is drawn at %3"_s.arg(picture.source.width())
                              .arg(picture.source.height())
                              .arg(SceneRun::describe(picture.place));
        }
    }
    for (const PaintLog::Text &drawn : record.texts) {
        if (drawn.toScreen.m11() != ratio || drawn.toScreen.m22() != ratio || drawn.toScreen.isRotating()) {
            complaints += u"the text \"%1\" is scaled"_s.arg(drawn.text);
        }
    }
    for (const PaintLog::Edge &edge : record.edges) {
        if ((!isUnderALine(edge, record) && !isOnPixels(edge, ratio)) || isClipped(edge, record, ratio)) {
            complaints += u"an edge lies between %1 and %2 of the shape %3"_s.arg(edge.outer)
                              .arg(edge.inner)
                              .arg(SceneRun::describe(edge.shape));
        }
    }
    if (record.texturedShapes > 0) {
        complaints += u"a shape is filled with a picture"_s;
    }
    for (QString &complaint : complaints) {
        complaint = SceneRun::describe(widget) + u": "_s + complaint;
    }
    return complaints;
}

/// The same while the widget has the focus of somebody who works by keyboard.
QStringList complaintsAboutFocused(QWidget *widget)
{
    if ((widget->focusPolicy() & Qt::TabFocus) != Qt::TabFocus || !widget->isEnabled()) {
        return {};
    }
    widget->setFocus(Qt::TabFocusReason);
    auto *area = qobject_cast<QAbstractScrollArea *>(widget);
    if (auto *grid = qobject_cast<HistoryGrid *>(widget)) {
        grid->setCurrentIndex(grid->model()->index(0, 0));
    }
    // Some marks are drawn by the ground.
    return complaintsAbout(area != nullptr ? area->viewport() : widget) +
           complaintsAbout(widget->parentWidget());
}

/// How many pixels of the window its widgets leave as they were.
qsizetype gaps(QWidget *window)
{
    const double ratio = window->devicePixelRatioF();
    QImage picture{window->grab().size(), QImage::Format_ARGB32_Premultiplied};
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    window->render(&picture, {}, {}, QWidget::DrawChildren);
    qsizetype count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        count += std::count_if(line, line + picture.width(), [](QRgb pixel) { return qAlpha(pixel) != 255; });
    }
    return count;
}

} // namespace

/// Every scene of the gallery at the resolution that the process was started with: what is drawn lies on the
/// pixels of the screen.
class SharpnessTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setCursorFlashTime(0);
        const QWidget any;
        QCOMPARE(any.devicePixelRatioF(), qEnvironmentVariable("QT_SCALE_FACTOR").toDouble());
    }

    void everythingLiesOnThePixelsOfTheScreen_data() { SceneRun::addRows(gallery::allScenes()); }

    void everythingLiesOnThePixelsOfTheScreen()
    {
        SceneRun run{SceneRun::current(gallery::allScenes())};
        run.show(oddSize);
        QStringList complaints;
        for (QWidget *widget : run.widgets()) {
            complaints += complaintsAbout(widget);
            complaints += complaintsAboutFocused(widget);
        }
        if (const qsizetype count = gaps(run.stage.window()); count > 0) {
            complaints += u"%1 pixels of the window are left out"_s.arg(count);
        }
        for (const QString &complaint : complaints) {
            qWarning("%s", qUtf8Printable(complaint));
        }
        QCOMPARE(complaints.size(), 0);
    }
};

QUILMORA_TEST(SharpnessTest, runScreenTest)
#include "SharpnessTest.moc"
