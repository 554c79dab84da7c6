#pragma once
// A panel's view that is made when the pilot first turns to it: a window that only tracks a flight
// does not carry the others' weight.

#include <QVBoxLayout>
#include <QWidget>
#include <functional>
#include <utility>

namespace norvane {

class Late_View : public QWidget {
  public:
    using Maker = std::function<QWidget*(QWidget* parent)>;

    Late_View(Maker make, QWidget* parent) : QWidget(parent), m_make(std::move(make)) {
        auto* rows = new QVBoxLayout(this);
        rows->setContentsMargins(0, 0, 0, 0);
    }

  protected:
    void showEvent(QShowEvent* event) override {
        if (const Maker make = std::exchange(m_make, nullptr)) {
            QWidget* view = make(this);
            layout()->addWidget(view);
            // At once: the keyboard is about to go there.
            view->show();
        }
        QWidget::showEvent(event);
    }

  private:
    Maker m_make;
};

}  // namespace norvane
