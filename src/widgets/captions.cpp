#include "widgets/captions.h"

#include <QLabel>
#include <QPushButton>
#include <utility>

namespace ostrel {

QPushButton* Captions::Button(const char* name, int id, std::function<void()> click) {
  auto* button = On(Named(new QPushButton, name), id);
  QObject::connect(button, &QPushButton::clicked, button, std::move(click));
  return button;
}

QLabel* Captions::Label(int id, QWidget* field) {
  auto* label = On(new QLabel, id);
  label->setBuddy(field);
  return label;
}

void Captions::Add(std::function<void()> set) {
  set();
  sets_.push_back(std::move(set));
}

void Captions::SetAll() const {
  for (const auto& set : sets_) set();
}

}  // namespace ostrel
