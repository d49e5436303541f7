#pragma once

#include <QWidget>

namespace quilmora {

/// Shows a failed generation.
class ErrorSection final : public QWidget
{
    Q_OBJECT

public:
    /// `message` is plain text of any length.
    explicit ErrorSection(const QString &message, QWidget *parent = nullptr);

Q_SIGNALS:
    void returnRequested();
};

} // namespace quilmora
