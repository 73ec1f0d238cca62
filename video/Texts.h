#pragma once

#include <QString>

/// What recorded lectures say to people.
namespace VideoText {

using namespace Qt::StringLiterals;

// Recording.
inline const QString c_strProjectNotWritten = u"设定视频课件信息失败！"_s;
inline const QString c_strNoKey = u"创建视频课件文件失败！"_s;
inline const QString c_strNoRecorder = u"启动视频录制工具失败！"_s;

// The script file.
inline const QString c_strNotOpened = u"对不起，无法打开视频文件！"_s;
inline const QString c_strBadFormat = u"对不起，错误的文件格式！"_s;

// Films.
inline const QString c_strNoFilm = u"录制的视频文件已损坏，无法读取。"_s;
inline const QString c_strFilmNotWritten = u"无法写入视频文件，请您检查磁盘空间后重试。"_s;

} // namespace VideoText
