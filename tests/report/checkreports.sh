#!/usr/bin/env bash
# Makes reports of each product and of jobs, checks their markup, looks at them in a browser at the width of a telephone
# and of a desk, light and dark, and measures them there. Pages and pictures stay in the folder.
# usage: checkreports.sh MVPTHOST FOLDER
set -euo pipefail
host=$1
folder=$2
here=$(cd "$(dirname "$0")" && pwd)
rm -rf "$folder"
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
export MVPTHOST_STORE=$folder/store
export XDG_CONFIG_HOME=$folder/browser XDG_CACHE_HOME=$folder/browser
failed=0

browse() {
    timeout 120 chromium --headless --no-sandbox --disable-gpu --hide-scrollbars --user-data-dir="$folder/browser" "$@" 2>/dev/null
}

# A copy of the page measures itself, in a frame, since a window has no telephone's width; the page has no script. Each
# line that it leaves has a mark, and its markup is escaped.
measure() { # page papers width scheme
    sed "s|<body>|<body data-papers=\"$2\">|; s|</body>|<script src=\"file://$here/measure.js\"></script></body>|" \
        "$1" >"$folder/measured.html"
    cat >"$folder/frame.html" <<HTML
<!DOCTYPE html><title>frame</title><body><script>
onmessage = event => { document.body.appendChild(document.createElement('pre')).textContent = event.data; };
</script><iframe src="measured.html" style="border: 0; width: $3px; height: 1400px"></iframe>
HTML
    browse --blink-settings=preferredColorScheme="$4" --window-size=1400,1500 --virtual-time-budget=5000 \
        --dump-dom "file://$folder/frame.html" >"$folder/measured.txt"
    if ! grep -q '^@@end' "$folder/measured.txt"; then
        echo "$1 at $3: the browser did not measure it"
        return 1
    fi
    ! grep '^@@' "$folder/measured.txt" | grep -v '^@@end' | sed "s|^@@|$(basename "$1") at $3, scheme $4: |"
}

check() { # page papers
    local page=$folder/$1.html width scheme
    tidy -q -e --show-warnings yes "$page" || failed=1
    ! grep -iE '<script|https?://|url\(|@import' "$page" || failed=1
    for width in 390 1280; do
        for scheme in light dark; do
            local number=1
            [ "$scheme" = dark ] && number=0
            measure "$page" "$2" "$width" "$number" || failed=1
            browse --blink-settings=preferredColorScheme=$number --window-size="$width,2600" \
                --screenshot="$folder/$1-$width-$scheme.png" "file://$page" >/dev/null || failed=1
        done
    done
    echo "$1: looked at, $2 papers"
}

for product in $("$host" product list | cut -d' ' -f1); do
    "$host" report --product "$product" -o "$folder/$product.html"
    check "$product" "$("$host" product show "$product" --json | grep -c '"area"')"
done

# A press whose names hold markup, with a paper of the user's own, and jobs of it.
name='Press <b>"9" & </title>'
"$host" printer add "$name" --product press8434
"$host" printer form add 'Sheet <i>' --width 310 --length 440 --printer "$name"
"$host" printer customsize add 'Card & more' --width 200 --length 301
papers=$(($("$host" product show press8434 --json | grep -c '"area"') + 2))
"$host" devmode new --printer "$name" -o "$folder/job.bin" --set dmScale=50 --set dmOrientation=2 --set dmDuplex=2 \
    --set dmCopies=7
"$host" report --printer "$name" --devmode "$folder/job.bin" -o "$folder/job.html"
check job "$papers"
grep -q '>lost<' "$folder/job.html" || { echo "job: no lost setting is shown"; failed=1; }
"$host" ticket --printer "$name" --devmode "$folder/job.bin" -o "$folder/job.xml" 2>/dev/null
sed 's/PageOrientation/PageOrientaton/; s/psk:NorthAmericaLetter/psk:NoSuchPaper/' "$folder/job.xml" >"$folder/ticket.xml"
"$host" report --printer "$name" --ticket "$folder/ticket.xml" -o "$folder/ticket.html"
check ticket "$papers"

rm -rf "$folder/browser" "$folder/frame.html" "$folder/measured.html" "$folder/measured.txt"
[ $failed = 0 ] || { echo "reports: see above"; exit 1; }
echo "reports: pages and pictures are in $folder"
