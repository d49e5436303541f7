#pragma once

#include <QWidget>

namespace quilmora
{

/// What the generate screen shows when a generation has failed.
class ErrorSection final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ErrorSection)

public:
    /// `message` is shown whole and as plain text, however long it is.
    explicit ErrorSection(const QString &message, QWidget *parent = nullptr);
    ~ErrorSection() override = default;

Q_SIGNALS:
    void returnRequested();
};

} // namespace quilmora
