#pragma once
// The library's process-wide objects are built at load in this fixed order, whichever
// source file defines them, and destroyed in reverse order at unload. Lower runs first.
#define KEL_INIT_ORDER(row) __attribute__((init_priority(2000 + (row))))

#define KEL_INIT_HELP_WRAPPER KEL_INIT_ORDER(1)
#define KEL_INIT_FILE_NAMES KEL_INIT_ORDER(2)
#define KEL_INIT_SE_TRANSLATOR KEL_INIT_ORDER(3)
#define KEL_INIT_USER_UNIT KEL_INIT_ORDER(4)
#define KEL_INIT_CRC_TABLES KEL_INIT_ORDER(5)
#define KEL_INIT_SOFT_KEY KEL_INIT_ORDER(6)
