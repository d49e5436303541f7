#include "support/ComposingInputMethod.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <qpa/qplatforminputcontext.h>

#include <private/qinputmethod_p.h>
#include <utility>

namespace quilmora::test {

class InputMethodContext final : public QPlatformInputContext
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(InputMethodContext)

public:
    InputMethodContext() = default;
    ~InputMethodContext() override = default;

    bool isValid() const override { return true; }

    void compose(const QString &word)
    {
        m_composed = word;
        const QInputMethodEvent::Attribute underlined{QInputMethodEvent::TextFormat, 0,
                                                      static_cast<int>(word.size()), QVariant{}};
        QInputMethodEvent event{word, {underlined}};
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }

    void commit() override
    {
        if (!m_composed.isEmpty()) {
            QInputMethodEvent event;
            event.setCommitString(std::exchange(m_composed, {}));
            QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
        }
    }

    void reset() override { m_composed.clear(); }

private:
    QString m_composed;
};

ComposingInputMethod::ComposingInputMethod() : m_context{std::make_unique<InputMethodContext>()}
{
    QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = m_context.get();
}

ComposingInputMethod::~ComposingInputMethod()
{
    QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = nullptr;
}

void ComposingInputMethod::drop()
{
    m_context->reset();
}

void ComposingInputMethod::compose(const QString &word)
{
    m_context->compose(word);
}

} // namespace quilmora::test

#include "ComposingInputMethod.moc"
