// What the parts of the main window do in the same way.
#include "simhost/gui/window_services.h"

#include "simhost/host/session.h"
#include "simhost/site/site_run.h"

#include <QMessageBox>
#include <QPushButton>

#include <algorithm>
#include <vector>

namespace simhost {

DrawingDatabase& WindowServices::drawing() const {
  return site.session().documents().current()->drawing();
}

void runForm(
    const WindowServices& services, const QString& name, const std::wstring& form, HostText command) {
  if (!services.runner.isBusy()) services.status.say(services.texts(HostText::running, {name}));
  services.status.showOutcome(services.runner.run(name, form), command);
}

QString captionOf(const HostTexts& texts, HostText command) {
  return texts(command).remove(QLatin1Char('&')).remove(QStringLiteral("..."));
}

int askQuestion(
    const WindowServices& services, HostText title, const QString& text,
    std::initializer_list<HostText> answers) {
  QMessageBox box(
      QMessageBox::Question, services.texts(title), text, QMessageBox::NoButton, &services.window);
  box.setTextFormat(Qt::PlainText);
  std::vector<QAbstractButton*> buttons;
  for (const HostText answer : answers)
    buttons.push_back(box.addButton(
        services.texts(answer),
        answer == HostText::keepEditing ? QMessageBox::RejectRole : QMessageBox::ActionRole));
  box.setDefaultButton(qobject_cast<QPushButton*>(buttons.front()));
  box.exec();
  const auto clicked = std::find(buttons.begin(), buttons.end(), box.clickedButton());
  return clicked == buttons.end() ? -1 : static_cast<int>(clicked - buttons.begin());
}

} // namespace simhost
