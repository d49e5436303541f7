#include "support/AccessibleTree.h"

#include "SceneRun.h"
#include "app/TopNavigationBar.h"
#include "support/ScreenTest.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

QStringList readLines(const QString &path)
{
    QFile file{path};
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed().split(u'\n')
                                          : QStringList{};
}

void writeLines(const QString &path, const QStringList &lines)
{
    QFile file{path};
    if (!file.open(QIODevice::WriteOnly) || file.write((lines.join(u'\n') + u'\n').toUtf8()) < 0) {
        qFatal("Cannot write %s", qUtf8Printable(path));
    }
}

} // namespace

/// What a screen reader finds on every page in every state, of menus and of the top bar, against what is
/// written down for it in `accessible/`: a file for each scene and one for the bar.
class AccessibleTreeTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(QDir{}.mkpath(actual())); }

    void itIsAsWrittenDown_data()
    {
        SceneRun::addRows(gallery::allScenes());
        QTest::newRow(topBar) << QString::fromLatin1(topBar);
    }

    void itIsAsWrittenDown()
    {
        QFETCH(const QString, scene);
        const bool isBar = scene == QLatin1String{topBar};
        SceneRun run{isBar ? gallery::allScenes().constFirst() : SceneRun::current(gallery::allScenes())};
        run.show({1100, 1080});
        auto *bar = run.stage.window()->findChild<TopNavigationBar *>();
        QWidget *overlay = run.stage.overlay();
        QStringList lines = isBar ? accessibleTree(bar)
                            : overlay != nullptr && overlay->isWindow()
                                ? accessibleTree(overlay)
                                : accessibleTree(run.stage.window(), bar);
        if (!isBar) {
            // OptionsTest has those that are not selected.
            lines.removeIf([](const QString &line) {
                return line.contains(u"RadioButton"_s) && !line.contains(u" checked"_s);
            });
        }
        // The service numbers its requests.
        lines.replaceInStrings(QRegularExpression{u"\\d{20,}"_s}, u"#"_s);
        const QString file = u'/' + scene + u".txt"_s;
        // To be read, and taken over where it is right, after a change.
        writeLines(actual() + file, lines);
        const QStringList written = readLines(expected() + file);
        for (qsizetype line = 0; line < std::min(lines.size(), written.size()); ++line) {
            QCOMPARE(lines.at(line), written.at(line));
        }
        QCOMPARE(lines.size(), written.size());
    }

    void nothingElseIsWrittenDown()
    {
        QStringList files = QDir{expected()}.entryList(QDir::Files);
        QVERIFY(files.removeOne(QLatin1String{topBar} + u".txt"_s));
        for (const gallery::Scene &scene : gallery::allScenes()) {
            QVERIFY2(files.removeOne(scene.name + u".txt"_s), qPrintable(scene.name));
        }
        QCOMPARE(files, QStringList{});
    }

private:
    static QString expected() { return QStringLiteral(EXPECTED_TREES); }
    static QString actual() { return QStringLiteral(ACTUAL_TREES); }

    static constexpr const char *topBar = "top-bar";
};

QUILMORA_TEST(AccessibleTreeTest, runScreenTest)

#include "AccessibleTreeTest.moc"
