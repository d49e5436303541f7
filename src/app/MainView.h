#pragma once

#include "app/NavigationTab.h"

#include <QWidget>

#include <functional>

class QVBoxLayout;

namespace quilmora
{

/// The content of the main window: the bar with the tabs, and below it the screen of the selected one. A
/// screen is made when its tab is selected and destroyed, with all that was typed on it, when another one is.
class MainView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MainView)

public:
    /// Makes the screen of a tab, owned by the given parent.
    using ScreenFactory = std::function<QWidget *(NavigationTab tab, QWidget *parent)>;

    explicit MainView(ScreenFactory makeScreen, QWidget *parent = nullptr);
    ~MainView() override = default;

    NavigationTab selectedTab() const { return tab; }

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void followScreen();
    void select(NavigationTab newTab);
    void showScreen();

    const ScreenFactory makeScreen;
    NavigationTab tab = NavigationTab::generate;
    QWidget *currentScreen = nullptr;
    QVBoxLayout *column;
    QMetaObject::Connection screenChanges;
};

} // namespace quilmora
