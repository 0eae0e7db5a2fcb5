#include "platform/Files.h"

Text Describe(FileError error)
{
    switch (error) {
    case FileError::none:
        return {};
    case FileError::notFound:
        return u"The file was not found";
    case FileError::exists:
        return u"A file of this name exists already";
    case FileError::inUse:
        return u"The file is in use by another program";
    case FileError::denied:
        return u"Access to the file was denied";
    case FileError::readFailed:
        return u"The file could not be read";
    case FileError::writeFailed:
        return u"The file could not be written";
    case FileError::full:
        return u"The disk is full";
    case FileError::outOfMemory:
        return u"There is not enough memory to read the file";
    }
    return {};
}
