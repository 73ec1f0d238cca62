#include "courseserver/CourseService.h"
#include "foundation/Exceptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <csignal>
#include <cstdio>

namespace {

CCourseService* g_pService = nullptr;

void OnSignal(int) {
    g_pService->Stop();
}

int Fail(const QString& strText) {
    std::fprintf(stderr, "vorel-course-server: %s\n", qPrintable(strText));
    return 1;
}

void DescribeOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(QStringLiteral(
        "A small course server: course lists, passwords, status reports and templates.\n\n"
        "--sample makes five courses of the school \"示范大学\", province 0, when the data folder has none:\n"
        "  1 大学物理      张明  123456 (initial password)\n"
        "  2 高等数学      李华  123456 (initial password)\n"
        "  3 数据结构      王芳  123456 (initial password)\n"
        "  4 中国古代文学  赵静  123456 (initial password)\n"
        "  5 计算机网络    陈强  wangluo8"));
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("address"), QStringLiteral("IPv4 address to listen on."), QStringLiteral("address"),
         QStringLiteral("127.0.0.1")},
        {QStringLiteral("port"), QStringLiteral("Port to listen on; 0 lets the system choose."),
         QStringLiteral("N"), QStringLiteral("8080")},
        {QStringLiteral("data"), QStringLiteral("Folder of the state and the access log."),
         QStringLiteral("folder"), QStringLiteral("course-server-data")},
        {QStringLiteral("templates"), QStringLiteral("Folder of the templates that are offered."),
         QStringLiteral("folder")},
        {QStringLiteral("sample"), QStringLiteral("Make the sample courses when there are none.")},
        {QStringLiteral("sample-school"), QStringLiteral("The sample courses' school."),
         QStringLiteral("name"), QStringLiteral("示范大学")},
        {QStringLiteral("session-seconds"), QStringLiteral("Silence after which a session is lost."),
         QStringLiteral("N"), QStringLiteral("300")},
        {QStringLiteral("max-online"), QStringLiteral("Courses open at once; 0 for any number."),
         QStringLiteral("N"), QStringLiteral("0")},
    });
}

/// A number of the option within the bounds; -1 for anything else.
int Number(const QCommandLineParser& parser, const QString& strName, int nLeast, int nMost) {
    bool bOk = false;
    const int n = parser.value(strName).toInt(&bOk);
    return bOk && n >= nLeast && n <= nMost ? n : -1;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    DescribeOptions(parser);
    parser.process(application);
    const int nPort = Number(parser, QStringLiteral("port"), 0, 65535);
    const int nSeconds = Number(parser, QStringLiteral("session-seconds"), 1, 86400);
    const int nOnline = Number(parser, QStringLiteral("max-online"), 0, 1000000);
    if (nPort < 0 || nSeconds < 0 || nOnline < 0)
        return Fail(QStringLiteral("a number is out of bounds; see --help"));

    CourseServiceOptions options;
    options.strAddress = parser.value(QStringLiteral("address"));
    options.nPort = static_cast<quint16>(nPort);
    options.strDataFolder = parser.value(QStringLiteral("data"));
    options.strTemplatesFolder = parser.value(QStringLiteral("templates"));
    if (parser.isSet(QStringLiteral("sample")))
        options.strSampleSchool = parser.value(QStringLiteral("sample-school"));
    options.nSessionSeconds = nSeconds;
    options.nMaxOnline = nOnline;
    try {
        CCourseService service(options);
        g_pService = &service;
        std::signal(SIGTERM, &OnSignal);
        std::signal(SIGINT, &OnSignal);
        std::printf("listening on %s:%d\n", qPrintable(options.strAddress), service.GetPort());
        std::fflush(stdout);
        service.Run();
        std::signal(SIGTERM, SIG_DFL);
        std::signal(SIGINT, SIG_DFL);
        return 0;
    } catch (const Torvane::CRunException& exception) {
        return Fail(exception.GetMessage());
    }
}
