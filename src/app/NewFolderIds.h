// NewFolderIds.h: the box that asks for a new folder's name, as resource and program call it.
#pragma once

#define ID_NEW_FOLDER 2
#define ID_NEW_FOLDER_WHERE 101
#define ID_NEW_FOLDER_NAME 102
