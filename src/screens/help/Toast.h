#pragma once

#include <QWidget>

#include <chrono>

class QVariantAnimation;

namespace quilmora {

class ElidedText;

/// A short message that fades in above the bottom of its parent, and out by itself. It takes no mouse events;
/// screen readers announce it.
class Toast final : public QWidget
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds usualStay{1500};
    static constexpr std::chrono::milliseconds fadeInTime{200};
    static constexpr std::chrono::milliseconds fadeOutTime{300};

    /// Messages start to fade out after `stay`.
    explicit Toast(QWidget *parent, std::chrono::milliseconds stay = usualStay);

    /// A visible message is replaced at once, and its timer then also ends the new one.
    void showMessage(const QString &message);

    /// The last message, visible or not.
    QString message() const { return accessibleName(); }

    /// Until the message starts to fade out.
    bool isUp() const { return m_up; }

    /// To be called when the size of the parent has changed.
    void place();

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    ElidedText text() const;
    void fadeTo(double opacity, std::chrono::milliseconds time);
    double opacity() const;

    const std::chrono::milliseconds m_stay;
    QVariantAnimation *m_fade;
    bool m_up = false;
};

} // namespace quilmora
