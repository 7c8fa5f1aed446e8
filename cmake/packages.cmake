# Where the libraries come from that every target needs. The building machine's own are of no use to
# another target: of those, what is nothing but headers is taken, and the rest built from source.

# Boost's headers. Nothing else of the folder they lie in may be seen by a cross compiler.
if(CMAKE_CROSSCOMPILING)
  set(QUILLO_BOOST_HEADERS /usr/include/boost CACHE PATH "Folder of Boost's headers")
  if(NOT EXISTS ${QUILLO_BOOST_HEADERS}/shared_ptr.hpp)
    message(FATAL_ERROR "Boost's headers are not in ${QUILLO_BOOST_HEADERS}. "
      "Install them (Debian: libboost-dev), or name their folder: -DQUILLO_BOOST_HEADERS=FOLDER")
  endif()
  set(Boost_INCLUDE_DIRS ${PROJECT_BINARY_DIR}/boost)
  file(MAKE_DIRECTORY ${Boost_INCLUDE_DIRS})
  file(CREATE_LINK ${QUILLO_BOOST_HEADERS} ${Boost_INCLUDE_DIRS}/boost SYMBOLIC)
  add_library(Boost::headers INTERFACE IMPORTED)
  target_include_directories(Boost::headers INTERFACE ${Boost_INCLUDE_DIRS})
else()
  find_package(Boost REQUIRED)
endif()

# GoogleTest and GoogleMock, as the targets GTest::gtest, GTest::gtest_main and GTest::gmock.
macro(quillo_find_googletest)
  if(CMAKE_CROSSCOMPILING)
    set(QUILLO_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "Folder of GoogleTest's sources")
    if(NOT EXISTS ${QUILLO_GOOGLETEST_SOURCE}/CMakeLists.txt)
      message(FATAL_ERROR "GoogleTest's sources are not in ${QUILLO_GOOGLETEST_SOURCE}. Install "
        "them (Debian: googletest), or name their folder: -DQUILLO_GOOGLETEST_SOURCE=FOLDER")
    endif()
    add_subdirectory(${QUILLO_GOOGLETEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest
      EXCLUDE_FROM_ALL SYSTEM)
    foreach(library IN ITEMS gtest gtest_main gmock)
      if(NOT TARGET GTest::${library})
        add_library(GTest::${library} ALIAS ${library})
      endif()
    endforeach()
  else()
    find_package(GTest REQUIRED)
  endif()
endmacro()
