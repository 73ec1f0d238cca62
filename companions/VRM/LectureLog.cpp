#include "companions/VRM/LectureLog.h"

#include "foundation/Exceptions.h"
#include "foundation/TextFile.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using Torvane::File::CFileException;

namespace {

/// More than the longest lecture takes.
constexpr qint64 c_nMaxLog = qint64{8} * 1024 * 1024;

// The words that lines begin with.
constexpr QByteArrayView c_presentation("presentation");
constexpr QByteArrayView c_slides("slides");
constexpr QByteArrayView c_film("film");
constexpr QByteArrayView c_kept("kept");
constexpr QByteArrayView c_part("part");
constexpr QByteArrayView c_slide("slide");
constexpr QByteArrayView c_pointer("pointer");

QByteArray Line(QByteArrayView word, std::initializer_list<qint64> numbers) {
    QByteArray line = word.toByteArray();
    for (const qint64 nNumber : numbers)
        line += ' ' + QByteArray::number(nNumber);
    return line;
}

QByteArray PathLine(QByteArrayView word, const QString& strPath) {
    return word.toByteArray() + ' ' + strPath.toUtf8().toPercentEncoding("/");
}

bool IsPlace(int nThousandths) {
    return nThousandths >= 0 && nThousandths <= 1000;
}

void ReadLine(const QByteArray& line, SLoggedLecture& lecture) {
    const QList<QByteArray> fields = line.split(' ');
    const QByteArray& word = fields.front();
    const QByteArray first = fields.value(1);
    const auto path = [&first] { return QString::fromUtf8(QByteArray::fromPercentEncoding(first)); };
    const qint64 nNumber = first.toLongLong();
    const int nSecond = fields.value(2).toInt();
    if (word == c_presentation)
        lecture.strPresentation = path();
    else if (word == c_film)
        lecture.strFilm = path();
    else if (word == c_kept)
        lecture.bOfKept = true;
    else if (word == c_slides)
        lecture.nSlides = first.toInt();
    else if (word == c_part)
        lecture.Lengths.append(nNumber);
    else if (nNumber < 0)
        return;
    else if (word == c_slide && nSecond >= 0 && nSecond < lecture.nSlides)
        lecture.Events.append({nNumber, nSecond});
    else if (const int nY = fields.value(3).toInt(); word == c_pointer && IsPlace(nSecond) && IsPlace(nY))
        lecture.Events.append({nNumber, -1, nSecond, nY});
}

} // namespace

qsizetype SLoggedLecture::CountTurns() const {
    const auto nShown = std::ranges::count_if(Events, [](const SEvent& event) { return event.nSlide >= 0; });
    return qMax<qsizetype>(nShown - 1, 0);
}

CLectureTimes SLoggedLecture::GetTimes(const QStringList& titles) const {
    CLectureTimes times(titles);
    for (const SEvent& event : Events) {
        if (event.nSlide >= 0)
            times.ShowSlide(event.nSlide, event.nTime);
        else
            times.MovePointer(event.nX, event.nY, event.nTime);
    }
    return times;
}

SLoggedLecture ReadLectureLog(const QString& strPath) {
    SLoggedLecture lecture;
    try {
        QByteArray log = ReadFileBytes(strPath, c_nMaxLog);
        // The last line may have been cut short.
        log.truncate(log.lastIndexOf('\n') + 1);
        for (const QByteArray& line : log.split('\n'))
            ReadLine(line, lecture);
    } catch (const CFileException&) {
    }
    return lecture;
}

void CLectureLog::Begin(const QString& strPath, const SLoggedLecture& lecture) {
    Close();
    m_file.setFileName(Platform::ToNativeExact(strPath));
    m_file.remove();
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        return;
    QByteArray head = PathLine(c_presentation, lecture.strPresentation) + '\n';
    if (lecture.bOfKept)
        head += c_kept.toByteArray() + '\n';
    if (!lecture.strFilm.isEmpty())
        head += PathLine(c_film, lecture.strFilm) + '\n';
    Write(head + Line(c_slides, {lecture.nSlides}), true);
}

void CLectureLog::ShowSlide(int nSlide, qint64 nTime) {
    Write(Line(c_slide, {nTime, nSlide}), true);
}

void CLectureLog::MovePointer(int nX, int nY, qint64 nTime) {
    Write(Line(c_pointer, {nTime, nX, nY}), false);
}

void CLectureLog::EndPart(qint64 nLength) {
    Write(Line(c_part, {nLength}), true);
}

void CLectureLog::Write(const QByteArray& line, bool bFlush) {
    if (!m_file.isOpen())
        return;
    const qint64 nEnd = m_file.size();
    // In one call, so that a line comes whole or is the last; and no line follows half a line.
    if (m_file.write(line + '\n') != line.size() + 1)
        m_file.resize(nEnd) && m_file.seek(nEnd);
    else if (bFlush)
        Platform::FlushBeside(m_file.handle());
}
