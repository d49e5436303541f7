#include "LayoutFaults.h"
#include "LongScenes.h"
#include "SceneRun.h"
#include "support/ScreenTest.h"

#include <QFontMetricsF>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

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
