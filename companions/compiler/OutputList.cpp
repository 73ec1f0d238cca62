#include "companions/compiler/OutputList.h"

#include <algorithm>
#include <charconv>

using namespace Qt::StringLiterals;

namespace {

constexpr char c_head[] = "VorelCompiler 2";
/// What a field of the fourth and later columns is, by its first character.
constexpr char c_source = '<';
constexpr char c_also = '+';
constexpr char c_note = '!';

bool MustEscape(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == '%';
}

void AppendField(QByteArray& out, const QString& strText) {
    const QByteArray text = strText.toUtf8();
    if (std::none_of(text.begin(), text.end(), MustEscape)) {
        out += text;
        return;
    }
    for (const char c : text) {
        if (!MustEscape(c))
            out += c;
        else
            out += '%' + QByteArray(1, c).toHex();
    }
}

QString FieldText(QByteArrayView field) {
    return field.contains('%') ? QString::fromUtf8(QByteArray::fromPercentEncoding(field.toByteArray()))
                               : QString::fromUtf8(field);
}

/// Takes what stands before the next separator off the text.
QByteArrayView Take(QByteArrayView& text, char separator) {
    const qsizetype nEnd = text.indexOf(separator);
    const QByteArrayView head = nEnd < 0 ? text : text.first(nEnd);
    text = nEnd < 0 ? QByteArrayView() : text.sliced(nEnd + 1);
    return head;
}

template <typename T>
T Number(QByteArrayView text, int nBase, T nDefault) {
    T nValue = 0;
    const auto [pEnd, error] = std::from_chars(text.data(), text.data() + text.size(), nValue, nBase);
    return error == std::errc() && pEnd == text.data() + text.size() ? nValue : nDefault;
}

OutputRecord ReadRecord(QByteArrayView line) {
    OutputRecord record;
    record.nInput = Number<quint64>(Take(line, '\t'), 16, 0);
    record.nSize = Number<qint64>(Take(line, '\t'), 10, -1);
    record.nModified = Number<qint64>(Take(line, '\t'), 10, 0);
    while (!line.isEmpty()) {
        const QByteArrayView field = Take(line, '\t');
        if (field.isEmpty())
            continue;
        const QString strText = FieldText(field.sliced(1));
        if (field[0] == c_source)
            record.Sources.append(strText);
        else if (field[0] == c_also)
            record.Also.append(strText);
        else if (field[0] == c_note)
            record.Notes.append(strText);
    }
    return record;
}

void AppendList(QByteArray& out, char mark, const QStringList& list) {
    for (const QString& strText : list) {
        out += '\t';
        out += mark;
        AppendField(out, strText);
    }
}

} // namespace

bool OutputList::IsSafeName(const QString& strName) {
    if (strName.isEmpty() || strName.contains(u'\0'))
        return false;
    for (const QStringView part : QStringView(strName).tokenize(u'/')) {
        if (part.isEmpty() || part == "."_L1 || part == ".."_L1)
            return false;
    }
    return true;
}

std::optional<OutputList::List> OutputList::Read(const QByteArray& bytes) {
    // What a killed run left of a line is none.
    QByteArrayView rest = QByteArrayView(bytes).first(bytes.lastIndexOf('\n') + 1);
    QByteArrayView head = Take(rest, '\n');
    if (Take(head, '\t') != QByteArrayView(c_head))
        return std::nullopt;
    List list;
    list.strOwner = FieldText(Take(head, '\t'));
    list.strPlace = FieldText(head);
    list.Files.reserve(std::count(bytes.begin(), bytes.end(), '\n'));
    while (!rest.isEmpty()) {
        QByteArrayView line = Take(rest, '\n');
        const QString strName = FieldText(Take(line, '\t'));
        if (!IsSafeName(strName))
            continue;
        OutputRecord record = ReadRecord(line);
        if (std::all_of(record.Also.begin(), record.Also.end(), IsSafeName))
            list.Files.insert(strName, std::move(record));
    }
    return list;
}

QByteArray OutputList::Head(const QString& strOwner, const QString& strPlace) {
    QByteArray out = c_head;
    out += '\t';
    AppendField(out, strOwner);
    out += '\t';
    AppendField(out, strPlace);
    return out + '\n';
}

void OutputList::Append(QByteArray& list, const QString& strName, const OutputRecord& record) {
    AppendField(list, strName);
    list += '\t' + QByteArray::number(record.nInput, 16) + '\t' + QByteArray::number(record.nSize) + '\t' +
            QByteArray::number(record.nModified);
    AppendList(list, c_source, record.Sources);
    AppendList(list, c_also, record.Also);
    AppendList(list, c_note, record.Notes);
    list += '\n';
}
