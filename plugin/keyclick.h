#ifndef KEYCLICK_H
#define KEYCLICK_H

class QSettings;

// The key click every page and dialog sounds on a button press: a short
// beep from the panel's buzzer, only while "General/buzzer" reads "on".
namespace KeyClick {

bool enabled(QSettings *settings);
void play(QSettings *settings);

} // namespace KeyClick

#endif // KEYCLICK_H
