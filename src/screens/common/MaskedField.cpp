#include "screens/common/MaskedField.h"

#include <QAccessibleWidget>

#include <mutex>

namespace quilmora
{
namespace
{

/// What screen readers are told of a MaskedField: that it is one, and how many dots it shows. Having no text
/// interface, it is no object of the events in which the toolkit tells of changed texts.
class MaskedFieldAccessible final : public QAccessibleWidget
{
public:
    explicit MaskedFieldAccessible(MaskedField &shown)
        : QAccessibleWidget{&shown, QAccessible::EditableText},
          field{shown}
    {
    }
    Q_DISABLE_COPY_MOVE(MaskedFieldAccessible)

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.editable = true;
        state.passwordEdit = true;
        return state;
    }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? field.displayText() : QAccessibleWidget::text(kind);
    }

protected:
    ~MaskedFieldAccessible() override = default;

private:
    const MaskedField &field;
};

QAccessibleInterface *makeAccessible(const QString & /*className*/, QObject *object)
{
    auto *field = qobject_cast<MaskedField *>(object);
    return field != nullptr ? new MaskedFieldAccessible{*field} : nullptr;
}

} // namespace

MaskedField::MaskedField(QWidget *parent) : QLineEdit{parent}
{
    static std::once_flag installed;
    std::call_once(installed, [] { QAccessible::installFactory(makeAccessible); });
    setEchoMode(QLineEdit::Password);
}

QVariant MaskedField::inputMethodQuery(Qt::InputMethodQuery query) const
{
    switch (query) {
    case Qt::ImSurroundingText:
    case Qt::ImTextBeforeCursor:
    case Qt::ImTextAfterCursor:
    case Qt::ImCurrentSelection:
        return QString{};
    default:
        return QLineEdit::inputMethodQuery(query);
    }
}

} // namespace quilmora
