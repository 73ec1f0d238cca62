#include "app/ui/VorelApp.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    CVorelApp vorel;
    return vorel.Run(application.arguments().mid(1));
}
