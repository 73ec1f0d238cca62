#pragma once

class QApplication;

/// Makes the standard widgets speak Chinese: with the toolkit's own translation where it is installed (or
/// lies in the folder "translations" beside the program), and with a short list of the texts that a person
/// meets everywhere where it isn't. To be called once, after the application object is made.
void InstallChineseTexts(QApplication& application);
