# The day of this version, from the head of CHANGELOG.md, whose newest version must be the project's.
# Nothing that is built or packed has another date, so it does not change from day to day.
#   ZAR_RELEASE_EPOCH     seconds since 1970, for SOURCE_DATE_EPOCH
#   ZAR_RELEASE_DATE      as manual pages write it: November 5, 2026
#   ZAR_RELEASE_RFC_DATE  as Debian's changelogs write it: Thu, 05 Nov 2026 00:00:00 +0000
set(changelog "${PROJECT_SOURCE_DIR}/CHANGELOG.md")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${changelog}")
file(STRINGS "${changelog}" heads REGEX "^## \\[[0-9.]+\\] - [0-9]+-[0-9]+-[0-9]+$")
list(GET heads 0 head)
string(REGEX MATCH "\\[([0-9.]+)\\] - ([0-9]+)-0?([0-9]+)-0?([0-9]+)" _ "${head}")
if(NOT CMAKE_MATCH_1 STREQUAL PROJECT_VERSION)
    message(FATAL_ERROR "CHANGELOG.md begins with ${head}, the project is ${PROJECT_VERSION}")
endif()

# The year is counted from March, so that the leap day is its last.
math(EXPR year "${CMAKE_MATCH_2} - (14 - ${CMAKE_MATCH_3}) / 12")
math(EXPR month "(${CMAKE_MATCH_3} + 9) % 12")
math(EXPR day "(153 * ${month} + 2) / 5 + ${CMAKE_MATCH_4} - 1")
math(EXPR days "365 * ${year} + ${year} / 4 - ${year} / 100 + ${year} / 400 + ${day} - 719468")
math(EXPR ZAR_RELEASE_EPOCH "86400 * ${days}")

set(epoch_before "$ENV{SOURCE_DATE_EPOCH}")
set(ENV{SOURCE_DATE_EPOCH} ${ZAR_RELEASE_EPOCH})
string(TIMESTAMP ZAR_RELEASE_DATE "%B %d, %Y" UTC)
string(REPLACE " 0" " " ZAR_RELEASE_DATE "${ZAR_RELEASE_DATE}")
string(TIMESTAMP ZAR_RELEASE_RFC_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(ENV{SOURCE_DATE_EPOCH} "${epoch_before}")
