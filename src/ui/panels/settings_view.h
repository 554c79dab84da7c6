#pragma once
// The settings panel on the screen: a tab for each page, and the two links that keep or drop what
// was changed on any of them.

#include <QTabWidget>
#include <QWidget>

#include "settingspanel/uc_settings.h"

namespace norvane {

class frmMain;

class Settings_View : public QWidget {
  public:
    /// The models live longer than the view.
    Settings_View(ucSettings& settings, frmMain& window, QWidget* parent);

  private:
    void Make_Pages();
    [[nodiscard]] QWidget* Make_End_Row();

    ucSettings& m_settings;
    QTabWidget* m_tabs;
};

}  // namespace norvane
