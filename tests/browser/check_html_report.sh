#!/usr/bin/env bash
# Renders distcorr's HTML report in headless Chromium and checks the result:
# a small run (scatter plot drawn as SVG points) and a large run (drawn as a
# density image with its colour scale), each with the report's header, tables
# and an error message; the large run's 100-column distance matrix must
# scroll inside its box while the page itself fits the window.
#
#   tests/browser/check_html_report.sh [BUILD_DIR] [OUT_DIR]
#
# BUILD_DIR holds bin/distcorr (default: build); OUT_DIR receives the data,
# pages, DOM dumps and screenshots (default: BUILD_DIR/browser-check).
# Needs Chromium (Debian package "chromium"). Exit status 0 when every check
# passes, 1 when one fails, 2 when something needed is missing.
set -euo pipefail

BUILD_DIR=${1:-build}
OUT_DIR=${2:-$BUILD_DIR/browser-check}
DISTCORR=$BUILD_DIR/bin/distcorr
CHROMIUM=${CHROMIUM:-$(command -v chromium || command -v chromium-browser || true)}

if [[ ! -x $DISTCORR ]]; then echo "check_html_report: $DISTCORR not found; build first" >&2; exit 2; fi
if [[ -z $CHROMIUM ]]; then echo "check_html_report: chromium not found (apt-get install chromium)" >&2; exit 2; fi
mkdir -p "$OUT_DIR"
OUT_DIR=$(cd "$OUT_DIR" && pwd)
PROFILE=$(mktemp -d)
trap 'rm -rf "$PROFILE"' EXIT

failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }
pass() { echo "ok:   $*"; }

# Deterministic data: u and v depend on each other non-linearly, w does not.
make_data() {
    awk -v n="$1" 'BEGIN {
        print "id,u,v,w"
        for (i = 1; i <= n; i++) {
            u = sin(i * 1.7) * 10 + i / 30
            v = u * u / 20 + cos(i * 0.9) * 3
            w = ((i * 37) % 101) / 10
            printf "%d,%.4f,%.4f,%.4f\n", i, u, v, w
        }
    }' > "$2"
}

chrome() {
    timeout 120 "$CHROMIUM" --headless --no-sandbox --disable-gpu --disable-quic --no-first-run \
        --disable-background-networking --disable-component-update --disable-sync \
        --user-data-dir="$PROFILE" --window-size=1280,4800 "$@" 2>/dev/null
}

count() { { grep -o "$1" "$2" || true; } | wc -l | tr -d ' '; }

# The page in a frame of 1200 x 900 pixels, measured by a script of the
# frame's parent (the report itself has no scripts): how many table boxes
# scroll sideways, and whether the page fits the frame's width.
check_layout() {
    local name=$1 html=$2 frame=$OUT_DIR/$1.layout.html
    cat > "$frame" <<EOF
<!DOCTYPE html><html lang="en"><head><meta charset="utf-8"><title>layout</title></head><body>
<iframe id="f" src="$(basename "$html")" width="1200" height="900"></iframe>
<script>
document.getElementById('f').addEventListener('load', function () {
  var d = this.contentDocument, scrolls = 0;
  d.querySelectorAll('.table-wrap').forEach(function (w) { if (w.scrollWidth > w.clientWidth + 1) scrolls++; });
  var fits = d.documentElement.scrollWidth <= d.documentElement.clientWidth + 1;
  document.body.setAttribute('data-layout', 'scrolling-boxes=' + scrolls + ' page-fits=' + fits);
});
</script></body></html>
EOF
    local layout
    layout=$(chrome --allow-file-access-from-files --virtual-time-budget=10000 --dump-dom "file://$frame" \
        | grep -o 'data-layout="[^"]*"' || true)
    [[ $layout == 'data-layout="scrolling-boxes=1 page-fits=true"' ]] \
        && pass "$name: the wide distance matrix scrolls inside its box; the page fits the window" \
        || fail "$name: layout of wide tables: ${layout:-not measured}"
}

check_page() {
    local name=$1 cases=$2 mode=$3
    local csv=$OUT_DIR/$name.csv html=$OUT_DIR/$name.html dom=$OUT_DIR/$name.dom.html png=$OUT_DIR/$name.png
    local points=$((cases * (cases - 1) / 2))
    make_data "$cases" "$csv"
    printf '%s\n' \
        "DISTANCE CORRELATION VARIABLE=u v w /ID VARIABLE=id" \
        "  /PRINT DETAILS DISTCORRCOEFF CORREST DISTVAR DISTMATRIX(CONFIGURE=[u])" \
        "  /PLOT SCATTERPLOT(XAXIS=u YAXIS=v)." \
        "DISTANCE CORRELATION VARIABLE=u nosuch." > "$OUT_DIR/$name.sps"
    "$DISTCORR" --data "$csv" "$OUT_DIR/$name.sps" --html "$html" -q 2>"$OUT_DIR/$name.stderr" || true
    if [[ ! -s $html ]]; then fail "$name: distcorr wrote no HTML page"; return; fi

    # The DOM as Chromium parsed it: the page renders and holds what we expect.
    chrome --dump-dom "file://$html" > "$dom" || true
    if ! grep -q '</html>' "$dom"; then fail "$name: Chromium could not load the page"; return; fi
    local circles images
    circles=$(count '<circle class="pt"' "$dom")
    images=$(count '<image class="density"' "$dom")
    if [[ $mode == points ]]; then
        [[ $circles == "$points" && $images == 0 ]] && pass "$name: $points points drawn as SVG circles" \
            || fail "$name: expected $points circles and no density image, found $circles and $images"
    else
        [[ $circles == 0 && $images == 1 ]] && pass "$name: $points points drawn as a density image" \
            || fail "$name: expected a density image and no circles, found $circles circles and $images images"
    fi
    grep -q '<caption>Distance Correlation Coefficients' "$dom" && pass "$name: coefficients table present" \
        || fail "$name: no coefficients table"
    grep -q '<caption>Distance Matrix for Variable u' "$dom" && pass "$name: distance matrix table present" \
        || fail "$name: no distance matrix table"
    grep -q '<li class="error">' "$dom" && pass "$name: error message shown" || fail "$name: no error message"
    grep -q '>Scatter Plot of pairwise distances</text>' "$dom" && pass "$name: chart title from GUIDE text.title" \
        || fail "$name: chart title missing"
    grep -q "<dt>Loaded</dt><dd>$cases cases, 4 variables</dd>" "$dom" && grep -q '<dt>Data file</dt>' "$dom" \
        && pass "$name: header names the data file and what was loaded" || fail "$name: report header missing"
    if [[ $mode == density ]]; then
        grep -q '>Points per cell</text>' "$dom" && pass "$name: density image has its colour scale" \
            || fail "$name: no colour scale beside the density image"
        check_layout "$name" "$html"
    fi

    chrome --screenshot="$png" "file://$html" > /dev/null || true
    if [[ -s $png ]]; then
        pass "$name: screenshot $png ($(wc -c < "$png") bytes)"
    else
        fail "$name: no screenshot"
        return
    fi
    # With Python at hand, the screenshot must show the chart's blue marks.
    if command -v python3 > /dev/null; then
        if python3 - "$png" <<'PY'
import struct, sys, zlib
data = open(sys.argv[1], "rb").read()
pos, chunks = 8, {}
while pos < len(data):
    n = struct.unpack(">I", data[pos:pos + 4])[0]
    kind = data[pos + 4:pos + 8]
    chunks.setdefault(kind, b"")
    chunks[kind] += data[pos + 8:pos + 8 + n]
    pos += 12 + n
w, h, depth, ctype = struct.unpack(">IIBB", chunks[b"IHDR"][:10])
bpp = {2: 3, 6: 4}[ctype]
raw = zlib.decompress(chunks[b"IDAT"])
stride = w * bpp
prev = bytearray(stride)
blue = 0
for y in range(h):
    f = raw[y * (stride + 1)]
    line = bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
    for i in range(stride):
        a = line[i - bpp] if i >= bpp else 0
        b = prev[i]
        c = prev[i - bpp] if i >= bpp else 0
        if f == 1: line[i] = (line[i] + a) & 255
        elif f == 2: line[i] = (line[i] + b) & 255
        elif f == 3: line[i] = (line[i] + (a + b) // 2) & 255
        elif f == 4:
            p = a + b - c
            pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
            line[i] = (line[i] + (a if pa <= pb and pa <= pc else b if pb <= pc else c)) & 255
    for x in range(0, stride, bpp):
        r, g, bl = line[x], line[x + 1], line[x + 2]
        if bl > r + 70 and bl > 100:
            blue += 1
    prev = line
sys.exit(0 if blue > 2000 else 1)
PY
        then pass "$name: screenshot shows the chart's marks"
        else fail "$name: screenshot shows no chart marks"
        fi
    fi
}

check_page small 60 points
check_page large 300 density

if ((failures > 0)); then
    echo "$failures check(s) failed; pages and screenshots are in $OUT_DIR" >&2
    exit 1
fi
echo "All browser checks passed; screenshots are in $OUT_DIR"
