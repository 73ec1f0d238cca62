#pragma once

#include <QString>

#include <functional>

/// Office files as web pages. LibreOffice does the converting, in a process of its own without a window and
/// with a profile of its own; what it gives is made a page with its pictures beside it, or for a presentation
/// a folder of slides. What a file itself wants to run or to load is not run and not loaded; scripts, objects
/// and links into this machine don't get into the pages, nor do hidden slides and sheets, comments and
/// speakers' notes.
///
/// All functions may be called from any thread; none shows anything. Paths are full, in backslash form.
namespace Torvane::Office {

/// A document, sheet or presentation, by the name's ending.
bool IsOfficeFile(const QString& strName);

/// Whether there is a program here that converts.
bool IsConverterInstalled();
/// Whether all is here that a file of that name needs.
bool IsConverterInstalled(const QString& strName);

/// Asked every few milliseconds while a conversion runs; false ends it at once.
using MayGoOn = std::function<bool()>;

/// NoSpace: the volume of the temporary files, or that of the page, is full.
enum class EConversion { Done, Failed, TimedOut, Cancelled, NoConverter, NoSpace };

/// Saves an Office file as the web page strTarget, "…\a.htm". Pictures, and the slides of a presentation,
/// come into the folder "…\a.files" beside it. What stood there under these names is replaced once all is
/// made: an answer but Done leaves it as it is, and nothing new, unless the writing itself failed or was
/// given up, after which neither stands there. The source is only read. strTitle is what the person calls
/// it, which the page has for its title; empty for its own name.
EConversion SaveOfficeFileAsHtm(const QString& strSource, const QString& strTarget,
                                const MayGoOn& mayGoOn = {}, const QString& strTitle = {});

/// Saves it under a free name in the folder. strResultName is what shows it, relative to the folder: the
/// page, or for a presentation "….files\torvaneframe.htm" where that could be made.
EConversion ConvertOfficeToHtml(const QString& strSource, const QString& strTargetFolder,
                                QString& strResultName, const MayGoOn& mayGoOn = {});

/// Puts "torvaneframe.htm", which shows the presentation of the page "strStem.htm", into the folder of its
/// slides. The stem goes into it as it stands, so one that would end the text around it is refused. False
/// when it can't.
bool FixFramePage(const QString& strStem, const QString& strFrameFolder);

/// Whether it is the folder of a presentation that was saved as a web page: "fullscreen.htm" and "pres.xml"
/// stand in it.
bool IsPptFrameFolder(const QString& strFolder);

} // namespace Torvane::Office
