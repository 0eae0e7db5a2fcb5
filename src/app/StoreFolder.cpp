#include "app/StoreFolder.h"

#include "app/DirectoryList.h"

bool StoreFolder::GoTo(const Text& path)
{
    const Text folder = NormalDirectoryPath(path);
    if (!IsFullPath(folder) || !files_.DirectoryExists(folder)) return false;
    path_ = folder;
    window_.ShowStoreFolder(path_);
    return true;
}

void StoreFolder::Choose(const Text& path)
{
    if (GoTo(path)) missing_.clear();
}

bool StoreFolder::Make(const Text& name)
{
    const Text path = PathInDirectory(path_, name);
    if (!files_.MakeDirectory(path)) return false;
    Choose(path);
    return true;
}

void StoreFolder::TakeFromSettings(const Text& path)
{
    missing_ = GoTo(path) ? Text() : path;
}

bool StoreFolder::IsSettled()
{
    if (missing_.empty() || accepted_) return true;
    if (!GoTo(missing_)) return false;
    missing_.clear();
    return true;
}
