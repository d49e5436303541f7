#pragma once

#include "app/NavigationTab.h"

#include <QWidget>

#include <functional>

class QVBoxLayout;

namespace quilmora {

/// The content of the main window: the navigation bar, and below it the screen of the selected tab. A screen
/// is created when its tab is selected, and destroyed with its inputs when another one is.
class MainView final : public QWidget
{
    Q_OBJECT

public:
    /// Creates the screen of a tab.
    using ScreenFactory = std::function<QWidget *(NavigationTab tab, QWidget *parent)>;

    explicit MainView(ScreenFactory makeScreen, QWidget *parent = nullptr);

    NavigationTab selectedTab() const { return m_tab; }

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void followScreen();
    void select(NavigationTab tab);
    void showScreen();

    const ScreenFactory m_makeScreen;
    NavigationTab m_tab = NavigationTab::generate;
    QWidget *m_currentScreen = nullptr;
    QVBoxLayout *m_column;
    QMetaObject::Connection m_screenChanges;
};

} // namespace quilmora
