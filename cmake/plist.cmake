# PkgConfig::PLIST, with PLIST_FREI naming the function that frees what libplist wrote: 2.3 renamed it.
include(CheckCXXSymbolExists)
pkg_check_modules(PLIST REQUIRED IMPORTED_TARGET GLOBAL libplist-2.0)
set(CMAKE_REQUIRED_LIBRARIES PkgConfig::PLIST)
check_cxx_symbol_exists(plist_mem_free plist/plist.h KALVARO_PLIST_MEM_FREE)
unset(CMAKE_REQUIRED_LIBRARIES)
target_compile_definitions(PkgConfig::PLIST INTERFACE
    PLIST_FREI=$<IF:$<BOOL:${KALVARO_PLIST_MEM_FREE}>,plist_mem_free,plist_to_xml_free>)
