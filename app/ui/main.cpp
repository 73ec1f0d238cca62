#include "app/ui/VorelApp.h"
#include "platform/ui/WebBrowser.h"

#include <QApplication>

int main(int argc, char** argv) {
    CWebBrowser2Ex::PrepareWebEngine();
    QApplication application(argc, argv);
    CVorelApp vorel;
    return vorel.Run(application.arguments().mid(1));
}
