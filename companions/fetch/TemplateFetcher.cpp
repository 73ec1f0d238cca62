#include "companions/fetch/TemplateFetcher.h"

#include "companions/fetch/InstallFolder.h"

int FetchTemplate(const FetchRequest& request, FetchProgress& progress, const FetchLimits& limits) {
    CInstallFolder place(request.TargetFolder);
    Download(request.Address, place.ArchivePath(), progress, limits.Network);
    Unpack(place.ArchivePath(), place.NewFolder(), request.TargetFolder, progress, limits.Archive);
    const QString strFinished = FindTemplate(place.NewFolder());
    progress.Stage = FetchProgress::EStage::Replacing;
    if (progress.bCancelled)
        throw CFetchCancelled();
    place.Install(strFinished);
    return progress.nFiles;
}
