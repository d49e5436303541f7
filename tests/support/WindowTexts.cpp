#include "support/WindowTexts.h"

#include "support/AccessibleFinder.h"
#include "support/DrawnTexts.h"

#include <QAccessibleActionInterface>
#include <QAccessibleTextInterface>
#include <QAccessibleValueInterface>
#include <QLineEdit>
#include <QMetaProperty>

namespace quilmora::test {
namespace {

bool isMaskedContent(const QObject &object, const char *property)
{
    const auto *field = qobject_cast<const QLineEdit *>(&object);
    return field != nullptr && field->echoMode() == QLineEdit::Password &&
           (qstrcmp(property, "text") == 0 || qstrcmp(property, "selectedText") == 0);
}

void addProperties(const QObject &object, QStringList &texts)
{
    texts.append(object.objectName());
    for (int index = 0; index < object.metaObject()->propertyCount(); ++index) {
        const QMetaProperty property = object.metaObject()->property(index);
        if (!isMaskedContent(object, property.name())) {
            const QStringList value = property.read(&object).toStringList();
            texts.append(value.isEmpty()
                             ? QString{}
                             : QString::fromLatin1(object.metaObject()->className()) + u'.' +
                                   QString::fromLatin1(property.name()) + u": " + value.join(u'\n'));
        }
    }
    const QList<QByteArray> dynamicNames = object.dynamicPropertyNames();
    for (const QByteArray &name : dynamicNames) {
        texts.append(object.property(name.constData()).toString());
    }
}

void addAccessible(QAccessibleInterface *piece, QStringList &texts)
{
    if (piece == nullptr) {
        return;
    }
    for (const auto kind : {QAccessible::Name, QAccessible::Description, QAccessible::Value,
                            QAccessible::Help, QAccessible::Accelerator, QAccessible::DebugDescription}) {
        texts.append(QString::number(kind) + u": " + piece->text(kind));
    }
    if (QAccessibleTextInterface *text = piece->textInterface()) {
        texts.append(u"text: " + text->text(0, text->characterCount()));
    }
    if (QAccessibleValueInterface *value = piece->valueInterface()) {
        texts.append(u"value: " + value->currentValue().toString());
    }
    if (QAccessibleActionInterface *action = piece->actionInterface()) {
        texts.append(action->actionNames());
    }
    for (int index = 0; index < piece->childCount(); ++index) {
        addAccessible(piece->child(index), texts);
    }
}

} // namespace

QStringList windowTexts(QWidget *window)
{
    QStringList texts = drawnTexts(window);
    addAccessible(accessible::interfaceOf(window), texts);
    addProperties(*window, texts);
    const QObjectList objects = window->findChildren<QObject *>();
    for (const QObject *object : objects) {
        addProperties(*object, texts);
    }
    texts.removeAll(QString{});
    return texts;
}

} // namespace quilmora::test
