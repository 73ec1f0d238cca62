// What a client may send to the course server, in pieces of a size that the first byte says.
#include "courseserver/CourseScript.h"
#include "courseserver/CourseService.h"
#include "courseserver/HttpRequest.h"
#include "tests/support/FuzzCheck.h"

#include <memory>

namespace {

CCourseScript& Script() {
    static CCourseStore store(QStringLiteral(":memory:"));
    static const std::unique_ptr<CCourseScript> pScript = [] {
        for (const ServedCourse& course : SampleCourses(QStringLiteral("x")))
            store.AddCourse(course);
        ScriptSettings settings;
        settings.Now = [] { return qint64{1'000'000}; };
        return std::make_unique<CCourseScript>(store, settings);
    }();
    return *pScript;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    if (nSize == 0)
        return 0;
    const QByteArrayView input(pData + 1, static_cast<qsizetype>(nSize - 1));
    CRequestReader whole;
    const CRequestReader::EState state = whole.Feed(input);

    CRequestReader pieces;
    CRequestReader::EState inPieces = CRequestReader::EState::More;
    const qsizetype nPiece = pData[0] + 1;
    for (qsizetype nAt = 0; nAt < input.size(); nAt += nPiece)
        inPieces = pieces.Feed(input.sliced(nAt, qMin(nPiece, input.size() - nAt)));
    Check(state == inPieces);
    if (state != CRequestReader::EState::Done)
        return 0;
    const HttpRequest& request = whole.GetRequest();
    Check(request.strTarget == pieces.GetRequest().strTarget && request.strTarget.startsWith('/'));
    Check(!request.Path().contains("//") && !request.Path().contains('?'));
    const ScriptReply reply = Script().Run(request.Query());
    Check(!reply.strOperation.isEmpty() && (reply.bSuccessful == (reply.nErrorCode == 0)));
    return 0;
}
