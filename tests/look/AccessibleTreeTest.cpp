#include "support/AccessibleTree.h"

#include "SceneRun.h"
#include "support/ScreenTest.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// What a screen reader is told of every screen in every state, against what is written down for it in
/// `accessible/`, a file for each scene.
class AccessibleTreeTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(QDir{}.mkpath(told())); }
    void itIsAsWrittenDown_data() { SceneRun::addRows(gallery::allScenes()); }
    void itIsAsWrittenDown();
    void nothingElseIsWrittenDown();

private:
    static QString expected() { return QStringLiteral(EXPECTED_TREES); }
    static QString told() { return QStringLiteral(TOLD_TREES); }
};

namespace
{

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

void AccessibleTreeTest::itIsAsWrittenDown()
{
    const gallery::Scene scene = SceneRun::current(gallery::allScenes());
    SceneRun run{scene};
    run.show({1100, 1080});
    QStringList lines = accessibleTree(run.stage.window());
    if (QWidget *overlay = run.stage.overlay(); overlay != nullptr && overlay->isWindow()) {
        lines += accessibleTree(overlay);
    }
    // The service numbers its requests.
    lines.replaceInStrings(QRegularExpression{u"\\d{20,}"_s}, u"#"_s);
    const QString file = u'/' + scene.name + u".txt"_s;
    // To be read, and taken over where it is right, after a change.
    writeLines(told() + file, lines);
    const QStringList written = readLines(expected() + file);
    for (qsizetype line = 0; line < std::min(lines.size(), written.size()); ++line) {
        QCOMPARE(lines.at(line), written.at(line));
    }
    QCOMPARE(lines.size(), written.size());
}

void AccessibleTreeTest::nothingElseIsWrittenDown()
{
    QStringList files = QDir{expected()}.entryList(QDir::Files);
    for (const gallery::Scene &scene : gallery::allScenes()) {
        QVERIFY2(files.removeOne(scene.name + u".txt"_s), qPrintable(scene.name));
    }
    QCOMPARE(files, QStringList{});
}

int main(int argc, char **argv)
{
    return runScreenTest<AccessibleTreeTest>(argc, argv);
}

#include "AccessibleTreeTest.moc"
