// RemoteControls.h: the structures and messages of the common controls, as they cross to a 32-bit process.
// From the Windows list-view, header and tree-view controls; a foreign address is a plain number in them.
#pragma once
#include "platform/ProcessApi.h"

struct RemoteListItem { // LVITEM
    std::uint32_t mask, item, subItem, state, stateMask;
    RemoteAddress text;
    std::int32_t textMax, image, param, indent;
};
static_assert(sizeof(RemoteListItem) == 40);

struct RemoteHeaderItem { // HDITEMA without the filter fields
    std::uint32_t mask;
    std::int32_t width;
    RemoteAddress text;
    std::uint32_t bitmap;
    std::int32_t textMax, format, param, image, order;
};
static_assert(sizeof(RemoteHeaderItem) == 36);

struct RemoteTreeItem { // TVITEM
    std::uint32_t mask;
    std::int32_t item;
    std::uint32_t state, stateMask;
    RemoteAddress text;
    std::int32_t textMax, image, selectedImage, children, param;
};
static_assert(sizeof(RemoteTreeItem) == 40);

namespace message {
inline constexpr std::uint32_t kKeyDown = 0x100, kKeyUp = 0x101, kChar = 0x102, kCommand = 0x111;
inline constexpr std::uint32_t kLeftDown = 0x201, kLeftUp = 0x202, kRightDown = 0x204, kRightUp = 0x205;
inline constexpr std::uint32_t kListItemCount = 0x1004, kListNextItem = 0x100C, kListHeader = 0x101F;
inline constexpr std::uint32_t kListEnsureVisible = 0x102A, kListSetItemState = 0x102B;
inline constexpr std::uint32_t kListSelectedCount = 0x1032, kListColumnOrder = 0x103B, kListItemW = 0x104B;
inline constexpr std::uint32_t kHeaderItemCount = 0x1200, kHeaderItemA = 0x1203;
inline constexpr std::uint32_t kTreeNextItem = 0x110A, kTreeSelectItem = 0x110B, kTreeItemW = 0x113E;
} // namespace message
