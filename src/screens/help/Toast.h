#pragma once

#include "screens/help/CentredText.h"

#include <QWidget>

#include <chrono>

class QVariantAnimation;

namespace quilmora
{

/// A short message that fades in over the bottom of its parent and goes by itself. The pointer passes through
/// it; screen readers are told of it.
class Toast final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Toast)

public:
    static constexpr std::chrono::milliseconds usualStay{1500};
    static constexpr std::chrono::milliseconds fadeInTime{200};
    static constexpr std::chrono::milliseconds fadeOutTime{300};

    /// Every message begins to fade out `stay` after it came.
    explicit Toast(QWidget *parent, std::chrono::milliseconds stay = usualStay);
    ~Toast() override = default;

    /// Shows the message, at once in place of one that is up. The end of the earlier message's stay then
    /// takes this one away too.
    void showMessage(const QString &message);

    /// The last message, also when it has gone.
    const QString &message() const { return line.text(); }

    /// Whether the message is up: not from the moment on at which it begins to fade out.
    bool isUp() const { return up; }

    /// Moves to its place above the bottom of the parent; to be called when the parent's size has changed.
    void place();

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void fadeTo(double opacity, std::chrono::milliseconds time);
    double opacity() const;

    const std::chrono::milliseconds stay;
    CentredText line;
    QVariantAnimation *fade;
    bool up = false;
};

} // namespace quilmora
