# Reads the JUnit file that CTest wrote and prints a line for each case: "passed", "skipped" or "failed NAME".
# A GoogleTest program that is one test for CTest wrote its cases to FOLDER/NAME.xml (-v folder=FOLDER): these
# stand for it.
function attribute(name) {
    return match($0, " " name "=\"[^\"]*\"") ? substr($0, RSTART + length(name) + 3, RLENGTH - length(name) - 4) : ""
}

function tell(verdict, name) { print verdict == "failed" ? "failed " name : verdict }

# Gives how many cases failed; -1 when there is no such file.
function tell_cases(file,    failures, verdict, name, got) {
    failures = 0
    name = ""
    while ((got = (getline <file)) > 0) {
        if ($0 ~ /^ *<testcase /) {
            if (name != "")
                tell(verdict, name)
            name = attribute("classname") "." attribute("name")
            verdict = attribute("result") == "completed" ? "passed" : "skipped"
        } else if ($0 ~ /^ *<failure / && verdict != "failed") {
            verdict = "failed"
            ++failures
        }
    }
    close(file)
    if (name != "")
        tell(verdict, name)
    return got < 0 ? -1 : failures
}

/^[ \t]*<testcase / {
    name = attribute("name")
    status = attribute("status")
    failures = tell_cases(folder "/" name ".xml")
    # A program can fail besides its cases: when it ends, or before it has written them.
    if (status == "fail" ? failures <= 0 : failures < 0)
        tell(status == "fail" ? "failed" : status == "run" ? "passed" : "skipped", name)
}
