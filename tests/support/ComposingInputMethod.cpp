#include "support/ComposingInputMethod.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <qpa/qplatforminputcontext.h>

#include <private/qinputmethod_p.h>
#include <utility>

namespace quilmora::test
{

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
        composed = word;
        const QInputMethodEvent::Attribute underlined{QInputMethodEvent::TextFormat, 0,
                                                      static_cast<int>(word.size()), QVariant{}};
        QInputMethodEvent event{word, {underlined}};
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }

    void commit() override
    {
        if (!composed.isEmpty()) {
            QInputMethodEvent event;
            event.setCommitString(std::exchange(composed, {}));
            QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
        }
    }

    void reset() override { composed.clear(); }

private:
    QString composed;
};

ComposingInputMethod::ComposingInputMethod() : context{std::make_unique<InputMethodContext>()}
{
    QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = context.get();
}

ComposingInputMethod::~ComposingInputMethod()
{
    QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = nullptr;
}

void ComposingInputMethod::drop()
{
    context->reset();
}

void ComposingInputMethod::compose(const QString &word)
{
    context->compose(word);
}

} // namespace quilmora::test

#include "ComposingInputMethod.moc"
