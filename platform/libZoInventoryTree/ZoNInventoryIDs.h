// ZoNInventoryIDs: the kinds of items and parameters of an inventory tree.
//
// Each constant is an address of one element with index 1; join them with `/`, give them another index with `[n]`.
#pragma once

#include "libZoInventoryTree/ZoCInventoryAddress.h"

namespace ZoNInventoryIDs {

// Items that hold other items.
extern const ZoCInventoryAddress ROOT;  // the whole target
extern const ZoCInventoryAddress HCN;   // host communication node
extern const ZoCInventoryAddress CN;    // compute node
extern const ZoCInventoryAddress NETC;  // network controller
extern const ZoCInventoryAddress BACKPLANE;
extern const ZoCInventoryAddress NETWORK;
extern const ZoCInventoryAddress IOROUTER;
extern const ZoCInventoryAddress ION;  // I/O node
extern const ZoCInventoryAddress IOMODULE;
extern const ZoCInventoryAddress PIGGYBACK_MODULE;
extern const ZoCInventoryAddress SUB_BOARDS;
extern const ZoCInventoryAddress FBMODULE;     // function block module
extern const ZoCInventoryAddress UPDATE_INFO;  // holds a board's update elements

// What can be updated; always below an UPDATE_INFO.
extern const ZoCInventoryAddress UPDATE_ELEMENT;
extern const ZoCInventoryAddress FILESYSTEM_ELEMENT;

// Groups of parameters.
extern const ZoCInventoryAddress PRODUCT;   // of a board
extern const ZoCInventoryAddress FIRMWARE;  // of an update file's inventory tree

// Parameters of boards and units.
extern const ZoCInventoryAddress BOARD_TYPE;     // string
extern const ZoCInventoryAddress VARIANT;        // string
extern const ZoCInventoryAddress SERIAL_NUMBER;  // unsigned
extern const ZoCInventoryAddress SLOT;           // unsigned
extern const ZoCInventoryAddress SLOT_COUNT;     // unsigned
extern const ZoCInventoryAddress UNITNAME;       // string
extern const ZoCInventoryAddress PACKAGE_NAME;   // string
extern const ZoCInventoryAddress RACKNAME;       // string

// Parameters of update elements; ID and NAME also of boards.
extern const ZoCInventoryAddress ID;                   // unsigned
extern const ZoCInventoryAddress NAME;                 // string
extern const ZoCInventoryAddress LOCATION;             // string: path on the flash drive
extern const ZoCInventoryAddress HW_COMPATIBILITY_ID;  // unsigned
extern const ZoCInventoryAddress SW_COMPATIBILITY_ID;  // unsigned
extern const ZoCInventoryAddress TYPE_ID;              // unsigned
extern const ZoCInventoryAddress CUSTOM;               // unsigned, 8 bits
extern const ZoCInventoryAddress CONFIGURATION;        // unsigned
extern const ZoCInventoryAddress VALID;                // unsigned, 8 bits
extern const ZoCInventoryAddress ACTIVE;               // unsigned, 8 bits
extern const ZoCInventoryAddress CHECKSUM_CRC32;       // unsigned
extern const ZoCInventoryAddress VERSION;              // version
extern const ZoCInventoryAddress VERSION_HISTORY;      // string

// Parameters of an update file's inventory tree, all unsigned.
extern const ZoCInventoryAddress MIN_HW_COMPATIBILITY_ID;
extern const ZoCInventoryAddress MAX_HW_COMPATIBILITY_ID;
extern const ZoCInventoryAddress MIN_SW_COMPATIBILITY_ID;
extern const ZoCInventoryAddress MAX_SW_COMPATIBILITY_ID;

}  // namespace ZoNInventoryIDs
