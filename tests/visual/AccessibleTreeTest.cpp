#include "SceneRun.h"
#include "app/TopNavigationBar.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenTest.h"

#include <QDir>
#include <QFile>
#include <QMetaEnum>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

QString roleName(QAccessible::Role role)
{
    return QString::fromLatin1(QMetaEnum::fromType<QAccessible::Role>().valueToKey(role));
}

QString statesOf(const QAccessible::State &state)
{
    const std::pair<bool, QString> states[]{
        {state.disabled, u"disabled"_s},     {state.checkable, u"checkable"_s}, {state.checked, u"checked"_s},
        {state.expanded, u"expanded"_s},     {state.collapsed, u"collapsed"_s}, {state.busy, u"busy"_s},
        {state.passwordEdit, u"password"_s}, {state.readOnly, u"read-only"_s},  {state.modal, u"modal"_s},
        {state.focusable, u"focusable"_s},   {state.focused, u"focused"_s},
    };
    QStringList names;
    for (const auto &[holds, name] : states) {
        if (holds) {
            names << name;
        }
    }
    return names.isEmpty() ? QString{} : u" ["_s + names.join(u' ') + u']';
}

QString lineFor(QAccessibleInterface &piece)
{
    QString line = roleName(piece.role());
    if (const QString name = piece.text(QAccessible::Name); !name.isEmpty()) {
        line += u" \""_s + name + u'"';
    }
    if (const QString description = piece.text(QAccessible::Description); !description.isEmpty()) {
        line += u" ("_s + description + u')';
    }
    line += statesOf(piece.state());
    if (QAccessibleTextInterface *text = piece.textInterface();
        text != nullptr && piece.role() == QAccessible::EditableText) {
        line += u" ="_s + text->text(0, text->characterCount());
    }
    return line.replace(u'\n', u'⏎');
}

bool saysNothing(QAccessibleInterface &piece)
{
    const bool isPlain = piece.role() == QAccessible::Client || piece.role() == QAccessible::Border ||
                         piece.role() == QAccessible::NoRole;
    return isPlain && piece.text(QAccessible::Name).isEmpty();
}

void describe(QAccessibleInterface *piece, const QWidget *hidden, int depth, QStringList &lines)
{
    if (piece == nullptr || piece->state().invisible || (hidden != nullptr && piece->object() == hidden)) {
        return;
    }
    const bool silent = saysNothing(*piece);
    if (!silent) {
        lines << QString(qsizetype{2} * depth, u' ') + lineFor(*piece);
    }
    for (int index = 0; index < piece->childCount(); ++index) {
        describe(piece->child(index), hidden, silent ? depth : depth + 1, lines);
    }
}

/// What a screen reader finds in a window: a line for each visible piece, indented below its parent, as in
/// `  RadioButton "经典" (4:3) [checkable checked focusable]`. The text of a field follows after "=". Pieces
/// without name, text or visible children, which are there for the layout only, are left out, and so is
/// `hidden` with all that is in it.
QStringList accessibleTree(QWidget *root, const QWidget *hidden = nullptr)
{
    QStringList lines;
    describe(accessible::interfaceOf(root), hidden, 0, lines);
    return lines;
}

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
            // GenerateFormTest has those that are not selected.
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
