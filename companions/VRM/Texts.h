#pragma once

#include <QString>

/// Everything that the recorder says to a person.
namespace RecorderText {

using namespace Qt::StringLiterals;

inline const QString c_strTitle = u"视频课件录制"_s;
inline const QString c_strTitleOf = u"视频课件录制 - %1"_s;
inline const QString c_strUsage = u"本程序由课程编辑程序启动：在栏目中选择“新建视频”即可录制授课实况。"_s;

// What is recorded.
inline const QString c_strPresentation = u"讲  稿(&P)："_s;
inline const QString c_strSource = u"录制内容(&V)："_s;
inline const QString c_strFilm = u"视频文件(&F)："_s;
inline const QString c_strBrowse = u"浏览(&B)..."_s;
inline const QString c_strBrowseFilm = u"浏览(&O)..."_s;
inline const QString c_strSound = u"同时录制麦克风的声音(&M)"_s;
inline const QString c_strNoMicrophone = u"没有找到麦克风。"_s;
inline const QString c_strStart = u"开始录制(&R)"_s;
inline const QString c_strCancel = u"取消"_s;
inline const QString c_strScreen = u"屏幕"_s;
inline const QString c_strCamera = u"摄像头：%1（%2）"_s;
inline const QString c_strMicrophone = u"麦克风（只有声音）"_s;
inline const QString c_strExistingFilm = u"已有的视频文件"_s;
inline const QString c_strPickPresentation = u"选择讲稿"_s;
inline const QString c_strPresentations = u"演示文稿 (*.ppt *.pptx *.pps *.ppsx *.odp);;所有文件 (*)"_s;
inline const QString c_strPickFilm = u"选择视频文件"_s;
inline const QString c_strFilms =
    u"视频文件 (*.asf *.wmv *.avi *.mp4 *.mpg *.mpeg *.mkv *.mov *.webm *.flv);;所有文件 (*)"_s;
inline const QString c_strHint =
    u"开始后，请您一边讲课（或观看视频）一边用“下一页”翻动讲稿，翻页的时间会一起记录下来。"_s;

inline const QString c_strWaylandHint =
    u"当前是 Wayland 会话，无法录制屏幕。请注销后选择 Xorg（X11）会话登录，或者改选其他录制内容。"_s;
inline const QString c_strKeptHint =
    u"上次录制的视频还在，但翻页的时间没有保存下来。请您选择讲稿，一边观看这段视频一边重新翻页。"_s;
inline const QString c_strOldTimes = u"沿用上次的翻页时间(&T)"_s;
inline const QString c_strOldTimesHint =
    u"上次录制的视频和翻页的时间都还在，共翻页 %1 次。按“生成课件”即可完成，不需要重新录制。"_s;
inline const QString c_strFinishKept = u"生成课件(&R)"_s;
inline const QString c_strOtherSlides =
    u"这份讲稿有 %1 页，上次录制时的讲稿有 %2 页，翻页的时间对不上。请您选择上次的讲稿，或者取消“沿用上次的翻页时间”，重新翻页。"_s;
inline const QString c_strScreenHint = u"录制的是整个屏幕，本窗口也会出现在视频中。"_s;
inline const QString c_strPreview = u"预  览："_s;
inline const QString c_strOpening = u"正在打开..."_s;
inline const QString c_strSoundAlone = u"只录制声音"_s;
inline const QString c_strKeptGoes = u"重新录制完成后，上次录制的视频将被删除，您确定重新录制吗？"_s;
inline const QString c_strRecordAnew = u"重新录制(&R)"_s;
inline const QString c_strKeepOld = u"返回(&B)"_s;

// Recording.
inline const QString c_strConverting = u"正在转换讲稿..."_s;
inline const QString c_strStarting = u"正在启动录制..."_s;
inline const QString c_strRecording = u"正在录制　%1"_s;
inline const QString c_strNothingYet = u"还没有收到画面或声音，请您检查录制设备。"_s;
inline const QString c_strPausedAt = u"已暂停　%1"_s;
inline const QString c_strPause = u"暂停(&U)"_s;
inline const QString c_strContinue = u"继续(&U)"_s;
inline const QString c_strLivePicture = u"画面"_s;
inline const QString c_strLevel = u"麦克风音量"_s;
inline const QString c_strSilent = u"麦克风没有声音，请您检查麦克风是否已经接好、打开。"_s;
inline const QString c_strPlaying = u"正在播放视频　%1 / %2"_s;
inline const QString c_strPlayingAt = u"正在播放视频　%1"_s;
inline const QString c_strWriting = u"正在生成视频课件..."_s;
inline const QString c_strWritingPart = u"正在生成视频课件...　%1%"_s;
inline const QString c_strPrevious = u"上一页(&P)"_s;
inline const QString c_strNext = u"下一页(&N)"_s;
inline const QString c_strStop = u"完成录制(&S)"_s;
inline const QString c_strOutline = u"授课纲要"_s;
inline const QString c_strSlide = u"讲稿第 %1 页：%2"_s;
inline const QString c_strUntitled = u"第 %1 页"_s;
inline const QString c_strAbandon = u"录制还没有完成，您确定放弃吗？"_s;
inline const QString c_strStopNow = u"您确定结束录制吗？"_s;
inline const QString c_strStopYes = u"结束(&Y)"_s;
inline const QString c_strYes = u"放弃(&Y)"_s;
inline const QString c_strNo = u"继续(&N)"_s;
inline const QString c_strDone = u"视频课件录制完成，共 %1 页，时长 %2。"_s;
inline const QString c_strBrokenOff =
    u"%1\n\n已录制的部分（%2）没有丢失。请您排除故障后按“继续”接着录制，或者按“完成录制”结束。"_s;
inline const QString c_strClose = u"关闭(&C)"_s;

// Failures.
inline const QString c_strBadKey = u"课程的密钥无效，无法录制。"_s;
inline const QString c_strNoPresentation = u"请您选择讲稿。"_s;
inline const QString c_strNoFilm = u"请您选择视频文件。"_s;
inline const QString c_strNotConverted = u"转换讲稿失败，请您检查文件是否能正常打开。"_s;
inline const QString c_strNoConverter =
    u"没有找到转换讲稿的程序，请您安装软件包 libreoffice-impress 和 poppler-utils。"_s;
inline const QString c_strNoSpace = u"磁盘空间不足，请您清理磁盘后重试。"_s;
inline const QString c_strNoEncoder = u"没有找到编码程序，请您安装软件包 ffmpeg。"_s;
inline const QString c_strStoppedEarly = u"录制意外中断。"_s;
inline const QString c_strFilmNotConverted = u"转换视频失败，请您检查磁盘空间和视频文件。"_s;
inline const QString c_strMicrophoneNotOpened =
    u"无法使用麦克风，请您检查它是否已经接好、是否正被其他程序使用。"_s;
/// Where it is recorded beside pictures.
inline const QString c_strSoundNotOpened =
    u"无法使用麦克风，请您检查它是否已经接好、是否正被其他程序使用，或者取消“同时录制麦克风的声音”。"_s;
inline const QString c_strCameraNotOpened =
    u"无法使用摄像头，请您检查它是否已经接好、是否正被其他程序使用。"_s;
inline const QString c_strScreenNotRecorded = u"无法录制屏幕。"_s;
inline const QString c_strFilmGone =
    u"找不到正在录制的视频，存放它的文件夹可能已被移走、改名或删除：\n%1\n\n请您把文件夹放回原处，再按“完成录制”或“重试”。"_s;
inline const QString c_strNotJoined = u"无法把各段录像合成一个视频，请您检查磁盘空间后重试。"_s;
inline const QString c_strNotWritten = u"无法写入视频课件的文件，请您检查磁盘空间后重试。"_s;
/// Below the failure: what giving up means.
inline const QString c_strAskAgain = u"%1\n\n放弃后只保留录制的视频，播放时讲稿不会自动翻页。"_s;
inline const QString c_strAskConvertAgain = u"%1\n\n重试不需要重新翻页；放弃后本次翻页的时间不会保留。"_s;
inline const QString c_strAgain = u"重试(&R)"_s;
inline const QString c_strGiveUp = u"放弃(&G)"_s;
inline const QString c_strFilmStops = u"%1\n\n视频只能播放到 %2，到此为止的翻页时间会保留。"_s;
inline const QString c_strFilmAlone = u"%1\n\n只保留了录制的视频，时长 %2，播放时讲稿不会自动翻页。"_s;
inline const QString c_strFilmsAlone =
    u"%1\n\n只保留了录制的视频，共 %2 个文件；播放的是第一个（时长 %3），讲稿不会自动翻页。"_s;
inline const QString c_strFilmInPlace = u"%1\n\n录制的视频保留在\n%2"_s;

} // namespace RecorderText
