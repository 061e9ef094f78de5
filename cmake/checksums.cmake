# Writes SHA256SUMS for the packages in a folder, as "sha256sum --check" reads it. To be run with
# cmake -D folder=FOLDER -P.
file(GLOB packages RELATIVE "${folder}" "${folder}/zar-x3*")
list(SORT packages)
set(sums "")
foreach(package ${packages})
    file(SHA256 "${folder}/${package}" sum)
    string(APPEND sums "${sum}  ${package}\n")
endforeach()
file(WRITE "${folder}/SHA256SUMS" "${sums}")
