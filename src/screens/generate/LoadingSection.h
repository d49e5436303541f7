#pragma once

#include <QWidget>

namespace quilmora
{

/// What the generate screen shows while a cover is being made.
class LoadingSection final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LoadingSection)

public:
    explicit LoadingSection(QWidget *parent = nullptr);
    ~LoadingSection() override = default;
};

} // namespace quilmora
