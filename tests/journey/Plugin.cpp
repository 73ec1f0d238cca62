#include "tests/journey/Journey.h"

#include <QApplication>
#include <QFile>
#include <QGenericPlugin>
#include <QThread>
#include <QTimer>

#include <exception>

namespace {

void RunWay(const QString& strFolder, const QString& strWay) {
    bool bPart = false;
    const int nPart = strWay.toInt(&bPart);
    if (bPart)
        RunJourney(strFolder, nPart);
    else if (strWay == QStringLiteral("tour"))
        RunTour(strFolder);
    else if (strWay == QStringLiteral("new-course"))
        MakeCourse(strFolder);
    else if (strWay == QStringLiteral("kinds"))
        MakeKinds(strFolder);
    else if (strWay == QStringLiteral("lecture"))
        RecordLecture(strFolder);
    else if (strWay == QStringLiteral("views"))
        ShowViews(strFolder);
    else
        RunTrial(strFolder, strWay);
}

/// What a companion's own process does in a journey; it inherits the environment that names the plug-in.
bool IsProgram(const char* szName) {
    return QCoreApplication::applicationFilePath().endsWith(QLatin1StringView(szName));
}

bool IsCompanion() {
    return IsProgram("/VorelCompiler") || IsProgram("/VorelRecorder");
}

void RunIn(const QString& strFolder) {
    if (IsProgram("/VorelCompiler"))
        CompileInWindow(strFolder);
    else if (IsProgram("/VorelRecorder"))
        RecordInWindow(strFolder);
    else
        RunWay(strFolder, qEnvironmentVariable("VOREL_JOURNEY_PART"));
}

} // namespace

/// Brings the journey into the real program, which knows nothing of it: Qt loads the plug-in because the
/// environment names it, and its thread plays the person.
class CJourneyPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "voreljourney.json")
public:
    QObject* create(const QString& /*strKey*/, const QString& /*strSpecification*/) override {
        QThread* pThread = QThread::create([] {
            const QString strFolder = qEnvironmentVariable("VOREL_JOURNEY_FOLDER");
            QByteArray result("ok\n");
            try {
                RunIn(strFolder);
            } catch (const std::exception& failure) {
                result = QByteArray("failed: ") + failure.what() + "\n";
            }
            QFile file(strFolder + QStringLiteral("/part.txt"));
            // The journey goes on behind the companion's end.
            if (IsCompanion() && result == "ok\n")
                return;
            if (file.open(QIODevice::WriteOnly))
                file.write(result);
            file.close();
            // The journey ends by closing the program as a person does; a failed one can't.
            if (result != "ok\n")
                _exit(3);
        });
        // Plug-ins come before the application object is whole: begin with its first event.
        QTimer::singleShot(0, qApp, [pThread] { pThread->start(); });
        return pThread;
    }
};

#include "Plugin.moc"
