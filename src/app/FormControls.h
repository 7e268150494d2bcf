// The widgets of the window, made from the table of controls.
#pragma once

#include <string_view>
#include <vector>

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

#include "app/grid/GridView.h"
#include "app/logic/ControlTable.h"

namespace tavrel::app {

class FormControls {
  public:
    /// Makes every control as a child of the form, hidden ones hidden, none placed yet.
    FormControls(QWidget& form, grid::ResultGrid& grid);

    QPushButton& Button(std::string_view name, int index = kNoIndex) { return Get<QPushButton>(name, index); }
    QLineEdit& Field(std::string_view name, int index = kNoIndex) { return Get<QLineEdit>(name, index); }
    QComboBox& Box(std::string_view name, int index = kNoIndex) { return Get<QComboBox>(name, index); }
    QCheckBox& Option(int index) { return Get<QCheckBox>("Check1", index); }
    QProgressBar& Bar(int index) { return Get<QProgressBar>("ProgressBar1", index); }
    GridView& Grid() { return Get<GridView>("spList", kNoIndex); }

    /// Puts every control where it belongs in a client area of that size.
    void Place(const QSize& client);
    /// Takes the largest size of type, up to the designed one, in which no caption is cut off.
    void FitFont();

  private:
    template <typename Widget>
    Widget& Get(std::string_view name, int index) {
        return static_cast<Widget&>(*widgets_[ControlPlaceOf(name, index)]);
    }
    void SetFont(const QFont& font);
    [[nodiscard]] bool CaptionsFit() const;

    std::vector<QWidget*> widgets_;  ///< in the order of ControlTable()
};

}  // namespace tavrel::app
