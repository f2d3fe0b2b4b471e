#!/usr/bin/env bash
# report_links.sh PROGRAM DESIGN: makes a report of the design and clicks every link of every page in a browser without
# a window. Exit code 77 where there is none.
set -euo pipefail
program=$1 design=$2
browser=$(command -v chromium || command -v chromium-browser || command -v google-chrome) || {
    echo "skipped: chromium is not installed, so nobody followed the links of the report"
    exit 77
}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$program" report "$design" -o "$scratch/report"

# Walks through the report in a frame. A click must change what the frame shows, to a document that is there and, where
# the link names an element, to one that the style sheet then highlights.
cat >"$scratch/walk.html" <<'END'
<!DOCTYPE html><meta charset="utf-8"><title>walk</title><iframe></iframe><pre></pre>
<script>
const frame = document.querySelector('iframe'), said = document.querySelector('pre');
const visited = new Set(), waiting = ['index.html'];
let links = 0;
const arrival = () => new Promise(done => {
    frame.onload = done;
    frame.contentWindow.onhashchange = done;
    setTimeout(done, 3000);
});
const show = async page => {
    const arrived = arrival();
    frame.src = 'report/' + page;
    await arrived;
};
const fault = text => { said.textContent += 'FAULT ' + text + '\n'; };
(async () => {
    while (waiting.length) {
        const page = waiting.shift();
        if (visited.has(page)) continue;
        visited.add(page);
        await show(page);
        const count = frame.contentDocument.querySelectorAll('a').length;
        if (!count || !frame.contentDocument.styleSheets.length) fault(page + ' has no links or no style');
        for (let i = 0; i < count; ++i) {
            await show('../walk-nothing.html');
            await show(page);
            const link = frame.contentDocument.querySelectorAll('a')[i], href = link.getAttribute('href');
            const arrived = arrival();
            link.dispatchEvent(new MouseEvent('click', {bubbles: true, cancelable: true, view: frame.contentWindow}));
            await arrived;
            ++links;
            const shown = frame.contentWindow.location, file = shown.pathname.split('/').pop();
            const [wanted, anchor] = href.split('#');
            if (file !== (wanted || page)) fault(page + ': ' + href + ' leads to ' + shown.href);
            else if (anchor && (frame.contentDocument.querySelector(':target') || {}).id !== anchor)
                fault(page + ': ' + href + ' shows no such element');
            waiting.push(file);
        }
    }
    said.textContent += 'visited ' + [...visited].sort().join(' ') + ', ' + links + ' links\n';
})().catch(error => fault(error.stack));
</script>
END
echo '<!DOCTYPE html><title>nothing</title>' >"$scratch/walk-nothing.html"
dom=$(timeout 200 "$browser" --headless --no-sandbox --disable-gpu --disable-dev-shm-usage --user-data-dir="$scratch/profile" \
    --allow-file-access-from-files --virtual-time-budget=600000 --dump-dom "file://$scratch/walk.html" 2>"$scratch/log") ||
    { tail -n 20 "$scratch/log"; exit 1; }
answer=$(sed -n '/<pre>/,/<\/pre>/{s/.*<pre>//;s/<\/pre>.*//;p}' <<<"$dom")
printf '%s\n' "$answer"
pages=$(cd "$scratch/report" && echo *.html)
[[ $answer != *FAULT* && $answer == *"visited $pages, "* ]]
