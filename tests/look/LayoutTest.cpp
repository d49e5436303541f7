#include "LayoutFaults.h"
#include "LongScenes.h"
#include "SceneRun.h"
#include "support/ScreenTest.h"

#include <QFontMetricsF>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// In percent.
constexpr int wide = 130;

double widthOf(const QFont &font)
{
    return QFontMetricsF{font}.horizontalAdvance(u"封面 Quilmora"_s);
}

} // namespace

/// Every screen in the smallest window that the display allows: with the usual texts and with very long ones,
/// in the usual font and in one that is much wider.
class LayoutTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { QApplication::setFont(usualFont); }
    void nothingIsCutOrCovered_data() { SceneRun::addRows(scenes()); }
    void nothingIsCutOrCovered();
    void nothingIsCutOrCoveredInAWideFont_data() { SceneRun::addRows(scenes()); }
    void nothingIsCutOrCoveredInAWideFont();

private:
    static QList<gallery::Scene> scenes() { return gallery::allScenes() + longScenes(); }
    static qsizetype faults();

    QFont usualFont;
};

void LayoutTest::initTestCase()
{
    QApplication::setCursorFlashTime(0);
    usualFont = QApplication::font();
}

/// How much is wrong with the scene of the row; says what.
qsizetype LayoutTest::faults()
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

void LayoutTest::nothingIsCutOrCovered()
{
    QCOMPARE(faults(), 0);
}

void LayoutTest::nothingIsCutOrCoveredInAWideFont()
{
    QFont font = usualFont;
    font.setStretch(wide);
    QVERIFY(widthOf(font) > 1.25 * widthOf(usualFont));
    QApplication::setFont(font);
    QCOMPARE(faults(), 0);
}

int main(int argc, char **argv)
{
    return runScreenTest<LayoutTest>(argc, argv);
}
#include "LayoutTest.moc"
