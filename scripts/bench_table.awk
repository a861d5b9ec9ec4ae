# Prints a benchmark's table of ratios: awk -f bench_table.awk FACTS ROWS
# FACTS is a fact a line, "NAME VALUE"; what a name begins with tells the unit. ROWS is a row a line,
# "what | our fact | the alternative | its fact | the ratio to reach", the last of these where there is one. A row without
# an alternative has the value to reach there, in the unit that is shown. A line without a bar is a heading.
BEGIN {
    FS = " *[|] *"
    unit("instructions", 1, "%.0f")
    unit("rate", 1, "%.0f /s")
    unit("time", 1000, "%.1f us")
    unit("frame_cpu", 1e6, "%.2f ms")
    unit("run_cpu", 1e6, "%.0f ms")
    unit("first_frame", 1e6, "%.0f ms")
    unit("memory", 1e6, "%.0f MB")
    unit("calls", 1, "%.0f")
    unit("frames", 1, "%.0f")
    unit("bytes", 1, "%.0f B")
}
function unit(prefix, divisor, format) {
    divisors[prefix] = divisor
    formats[prefix] = format
}
function fact(name) {
    if (name in value)
        return value[name]
    print "not measured: " name > "/dev/stderr"
    failed = 1
    exit 1
}
function kind(name) {
    sub("/.*", "", name)
    return name in formats ? name : "time"
}
function shown(name) { return fact(name) / divisors[kind(name)] }
function figure(name) { return sprintf(formats[kind(name)], shown(name)) }
function goal(target, reached,   words) {
    if (target == "") return ""
    split(target, words, " ")
    return target ((words[1] == "<=" ? reached <= words[2] : reached < words[2]) ? "  met" : "  MISSED")
}
function line(what, ours, other, its, ratio, target,   text) {
    text = sprintf("%-45s %12s   %-18s %12s %7s   %s", what, ours, other, its, ratio, target)
    sub(/ +$/, "", text)
    print text
}
FNR == NR { split($0, pair, " "); value[pair[1]] = pair[2]; next }
FNR == 1 { line("what", "ours", "alternative", "its", "ratio", "target") }
NF == 1 { print "\n" $1; next }
$3 == "" { line("  " $1, figure($2), "", "", "", goal($5, shown($2))); next }
{
    if (fact($2) > 0 && fact($4) > 0) {
        ratio = fact($2) / fact($4)
        line("  " $1, figure($2), $3, figure($4), sprintf("%.2f", ratio), goal($5, ratio))
    } else { # a difference of two runs that other work on the machine has drowned
        line("  " $1, figure($2), $3, figure($4), "?", $5 == "" ? "" : $5 "  NOT MEASURED")
    }
}
END { exit failed }
