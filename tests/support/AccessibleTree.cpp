#include "support/AccessibleTree.h"

#include "support/AccessibleFinder.h"

#include <QMetaEnum>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

QString roleName(QAccessible::Role role)
{
    return QString::fromLatin1(QMetaEnum::fromType<QAccessible::Role>().valueToKey(role));
}

QString statesOf(const QAccessible::State &state)
{
    QStringList names;
    const auto add = [&names](bool holds, const QString &name) {
        if (holds) {
            names << name;
        }
    };
    add(state.disabled, u"disabled"_s);
    add(state.checkable, u"checkable"_s);
    add(state.checked, u"checked"_s);
    add(state.expanded, u"expanded"_s);
    add(state.collapsed, u"collapsed"_s);
    add(state.busy, u"busy"_s);
    add(state.passwordEdit, u"password"_s);
    add(state.readOnly, u"read-only"_s);
    add(state.modal, u"modal"_s);
    add(state.focusable, u"focusable"_s);
    add(state.focused, u"focused"_s);
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

} // namespace

QStringList accessibleTree(QWidget *root, const QWidget *hidden)
{
    QStringList lines;
    describe(accessible::interfaceOf(root), hidden, 0, lines);
    return lines;
}

} // namespace quilmora::test
