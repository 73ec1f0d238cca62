#include "video/AsfFile.h"

#include "foundation/Exceptions.h"
#include "platform/base/NativePath.h"
#include "video/Texts.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <optional>

using Torvane::CRunException;

namespace {

constexpr qsizetype c_nGuid = 16;
/// GUID and size of an object.
constexpr qsizetype c_nObjectHead = 24;
/// The header object's own fields: its head, how many objects it holds, two bytes.
constexpr qsizetype c_nHeaderHead = 30;
constexpr qsizetype c_nCountAt = 24;
/// The headers of films are a few thousand bytes long.
constexpr qint64 c_nMaxHeader = qint64{16} * 1024 * 1024;
constexpr qint64 c_nMaxName = 32000;
constexpr qint64 c_nMaxCopyPiece = qint64{1024} * 1024;

const QByteArray c_header = QByteArray::fromHex("3026b2758e66cf11a6d900aa0062ce6c");
const QByteArray c_fileProperties = QByteArray::fromHex("a1dcab8c47a9cf118ee400c00c205365");
const QByteArray c_scriptCommands = QByteArray::fromHex("301afb1e620bd011a39b00a0c90348f6");
const QByteArray c_scriptReserved = QByteArray::fromHex("e3cb1a4b0b10d011a39b00a0c90348f6");
const QByteArray c_markers = QByteArray::fromHex("01cd87f451a9cf118ee600c00c205365");
const QByteArray c_markersReserved = QByteArray::fromHex("20dbfe4cf675cf119c0f00a0c90349cb");

constexpr qsizetype c_nFileSizeAt = c_nObjectHead + c_nGuid;
constexpr qsizetype c_nPrerollAt = c_nObjectHead + 56;
constexpr qsizetype c_nFilePropertiesLength = c_nObjectHead + 80;

/// Numbers and texts one behind the other; once the bytes are out, all that follows is zero and empty.
class CFields {
public:
    explicit CFields(QByteArrayView bytes) : m_rest(bytes) {}

    template <typename T>
    T Take() {
        const QByteArrayView bytes = TakeBytes(sizeof(T));
        return bytes.isEmpty() ? T(0) : qFromLittleEndian<T>(bytes.data());
    }
    QString TakeText(qint64 nUnits) {
        const QByteArrayView bytes = TakeBytes(nUnits * 2);
        QString strText;
        for (qsizetype i = 0; i + 1 < bytes.size(); i += 2) {
            const QChar c(qFromLittleEndian<quint16>(bytes.data() + i));
            if (c.isNull())
                break;
            strText += c;
        }
        return strText;
    }
    QByteArrayView TakeBytes(qint64 nBytes) {
        if (nBytes > m_rest.size()) {
            m_bOut = true;
            m_rest = {};
            return {};
        }
        const QByteArrayView taken = m_rest.first(nBytes);
        m_rest = m_rest.sliced(nBytes);
        return taken;
    }
    bool IsOut() const { return m_bOut; }

private:
    QByteArrayView m_rest;
    bool m_bOut = false;
};

template <typename T>
void Put(QByteArray& bytes, T value) {
    const T little = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof(T));
}

void PutText(QByteArray& bytes, const QString& strText) {
    for (const QChar c : strText)
        Put<quint16>(bytes, c.unicode());
}

/// A plain file, of which others may be read and never end.
bool OpenPlain(QFile& file) {
    return QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly);
}

/// The header object as a whole; nothing where there is none.
std::optional<QByteArray> ReadHeader(QFile& file) {
    QByteArray header = file.read(c_nHeaderHead);
    if (header.size() < c_nHeaderHead || !header.startsWith(c_header))
        return std::nullopt;
    const auto nSize = qFromLittleEndian<quint64>(header.constData() + c_nGuid);
    if (nSize < quint64(c_nHeaderHead) || nSize > quint64(c_nMaxHeader))
        return std::nullopt;
    header += file.read(qint64(nSize) - c_nHeaderHead);
    return header;
}

struct SObject {
    QByteArrayView guid;
    /// With GUID and size.
    QByteArrayView whole;
};

/// The objects in the header, up to the first that does not end in it.
QList<SObject> ObjectsIn(QByteArrayView header) {
    QList<SObject> objects;
    for (qsizetype nAt = c_nHeaderHead; nAt + c_nObjectHead <= header.size();) {
        const auto nSize = qFromLittleEndian<quint64>(header.data() + nAt + c_nGuid);
        if (nSize < quint64(c_nObjectHead) || nSize > quint64(header.size() - nAt))
            break;
        objects.append({header.sliced(nAt, c_nGuid), header.sliced(nAt, qsizetype(nSize))});
        nAt += qsizetype(nSize);
    }
    return objects;
}

/// How long players fill their buffers; markers count from before that. Milliseconds.
qint64 PrerollOf(const QList<SObject>& objects) {
    for (const SObject& object : objects) {
        if (object.guid == c_fileProperties && object.whole.size() >= c_nFilePropertiesLength)
            return std::clamp<qint64>(qFromLittleEndian<qint64>(object.whole.data() + c_nPrerollAt), 0,
                                      qint64{3600} * 1000);
    }
    return 0;
}

QList<SAsfCommand> CommandsIn(QByteArrayView whole) {
    CFields fields(whole.sliced(c_nObjectHead));
    fields.TakeBytes(c_nGuid);
    const auto nCommands = fields.Take<quint16>();
    const auto nTypes = fields.Take<quint16>();
    QList<QString> types;
    for (int i = 0; i < nTypes && !fields.IsOut(); ++i)
        types.append(fields.TakeText(fields.Take<quint16>()));
    QList<SAsfCommand> commands;
    for (int i = 0; i < nCommands; ++i) {
        SAsfCommand command;
        command.nTime = fields.Take<quint32>();
        command.strType = types.value(fields.Take<quint16>());
        command.strParameter = fields.TakeText(fields.Take<quint16>());
        if (fields.IsOut())
            break;
        commands.append(command);
    }
    return commands;
}

QList<SAsfMarker> MarkersIn(QByteArrayView whole, qint64 nPreroll) {
    CFields fields(whole.sliced(c_nObjectHead));
    fields.TakeBytes(c_nGuid);
    const auto nMarkers = fields.Take<quint32>();
    fields.Take<quint16>();
    fields.TakeBytes(fields.Take<quint16>());
    QList<SAsfMarker> markers;
    for (quint32 i = 0; i < nMarkers && !fields.IsOut(); ++i) {
        SAsfMarker marker;
        fields.Take<quint64>();
        marker.nTime = qMax<qint64>(fields.Take<qint64>() / 10000 - nPreroll, 0);
        fields.Take<quint16>();
        fields.Take<quint32>();
        fields.Take<quint32>();
        marker.strName = fields.TakeText(fields.Take<quint32>());
        if (!fields.IsOut())
            markers.append(marker);
    }
    return markers;
}

QByteArray AsObject(const QByteArray& guid, const QByteArray& data) {
    QByteArray object = guid;
    Put<quint64>(object, quint64(c_nObjectHead + data.size()));
    return object + data;
}

QByteArray CommandsObject(const QList<SAsfCommand>& commands) {
    QStringList types;
    for (const SAsfCommand& command : commands) {
        if (!types.contains(command.strType))
            types.append(command.strType);
    }
    QByteArray data = c_scriptReserved;
    Put<quint16>(data, quint16(commands.size()));
    Put<quint16>(data, quint16(types.size()));
    for (const QString& strType : std::as_const(types)) {
        Put<quint16>(data, quint16(strType.size()));
        PutText(data, strType);
    }
    for (const SAsfCommand& command : commands) {
        Put<quint32>(data, quint32(command.nTime));
        Put<quint16>(data, quint16(types.indexOf(command.strType)));
        Put<quint16>(data, quint16(command.strParameter.size()));
        PutText(data, command.strParameter);
    }
    return AsObject(c_scriptCommands, data);
}

QByteArray MarkersObject(const QList<SAsfMarker>& markers, qint64 nPreroll) {
    QByteArray data = c_markersReserved;
    Put<quint32>(data, quint32(markers.size()));
    Put<quint16>(data, 0);
    Put<quint16>(data, 0);
    for (const SAsfMarker& marker : markers) {
        const QString strName = marker.strName.left(c_nMaxName) + QChar(u'\0');
        // Where in the file it is stays unsaid: players find the time by the file's index.
        Put<quint64>(data, 0);
        Put<qint64>(data, (marker.nTime + nPreroll) * 10000);
        Put<quint16>(data, quint16(12 + strName.size() * 2));
        Put<quint32>(data, quint32(marker.nTime));
        Put<quint32>(data, 0);
        Put<quint32>(data, quint32(strName.size()));
        PutText(data, strName);
    }
    return AsObject(c_markers, data);
}

/// The header with these commands and markers and no others.
QByteArray HeaderWith(const QByteArray& header, const SAsfScript& script, qint64 nBehind) {
    const QList<SObject> objects = ObjectsIn(header);
    QByteArray made = header.first(c_nHeaderHead);
    quint32 nObjects = 0;
    qsizetype nPropertiesAt = -1;
    for (const SObject& object : objects) {
        if (object.guid == c_scriptCommands || object.guid == c_markers)
            continue;
        if (object.guid == c_fileProperties && object.whole.size() >= c_nFilePropertiesLength)
            nPropertiesAt = made.size();
        made += object.whole;
        ++nObjects;
    }
    if (!script.Commands.isEmpty() && ++nObjects > 0)
        made += CommandsObject(script.Commands);
    if (!script.Markers.isEmpty() && ++nObjects > 0)
        made += MarkersObject(script.Markers, PrerollOf(objects));
    qToLittleEndian(quint64(made.size()), made.data() + c_nGuid);
    qToLittleEndian(nObjects, made.data() + c_nCountAt);
    if (nPropertiesAt >= 0)
        qToLittleEndian(quint64(made.size() + nBehind), made.data() + nPropertiesAt + c_nFileSizeAt);
    return made;
}

} // namespace

SAsfScript ReadAsfScript(const QString& strPath) {
    SAsfScript script;
    QFile file(Platform::ToNative(strPath));
    if (!OpenPlain(file))
        return script;
    const std::optional<QByteArray> header = ReadHeader(file);
    if (!header)
        return script;
    const QList<SObject> objects = ObjectsIn(*header);
    const qint64 nPreroll = PrerollOf(objects);
    for (const SObject& object : objects) {
        if (object.guid == c_scriptCommands)
            script.Commands += CommandsIn(object.whole);
        else if (object.guid == c_markers)
            script.Markers += MarkersIn(object.whole, nPreroll);
    }
    std::ranges::stable_sort(script.Commands, {}, &SAsfCommand::nTime);
    return script;
}

void WriteAsfScript(const QString& strSource, const QString& strTarget, const SAsfScript& script,
                    const std::function<bool(qint64, qint64)>& progress) {
    QFile source(Platform::ToNative(strSource));
    const std::optional<QByteArray> header = OpenPlain(source) ? ReadHeader(source) : std::nullopt;
    if (!header || source.size() < header->size())
        throw CRunException(VideoText::c_strNoFilm);
    const qint64 nBehind = source.size() - header->size();
    const QByteArray made = HeaderWith(*header, script, nBehind);
    QFile target(Platform::ToNativeExact(strTarget));
    bool bDone = target.open(QIODevice::WriteOnly | QIODevice::NewOnly);
    if (!bDone)
        throw CRunException(VideoText::c_strFilmNotWritten);
    bDone = target.write(made) == made.size();
    for (qint64 nCopied = 0; bDone && nCopied < nBehind;) {
        const QByteArray piece = source.read(qMin(c_nMaxCopyPiece, nBehind - nCopied));
        nCopied += piece.size();
        bDone = !piece.isEmpty() && target.write(piece) == piece.size() &&
                (!progress || progress(nCopied, nBehind));
    }
    if (!bDone || !target.flush()) {
        target.remove();
        throw CRunException(VideoText::c_strFilmNotWritten);
    }
}
