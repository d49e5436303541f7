#pragma once

#include <QWidget>

namespace quilmora {

/// Shows that a cover is being generated.
class LoadingSection final : public QWidget
{
    Q_OBJECT

public:
    explicit LoadingSection(QWidget *parent = nullptr);
};

} // namespace quilmora
