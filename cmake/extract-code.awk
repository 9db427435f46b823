# Writes each "```cpp" or "```cmake" block of a Markdown file whose first line is "// NAME" or "# NAME" to the file NAME in
# the directory `out`.
/^```(cpp|cmake)$/ { first = 1; next }
/^```$/ { if (file != "") close(file); file = ""; first = 0; next }
first { first = 0; if (($1 == "//" || $1 == "#") && NF == 2) file = out "/" $2 }
file != "" { print > file }
