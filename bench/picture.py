"""The ratios as a picture: one bar a peer, on a logarithmic scale."""

import math

BAR, GAP, LEFT, WIDTH = 16, 14, 430, 860


def bars(rows):
    rows = [row for row in rows if len(row["seconds"]) > 1 and not
            row["work"].startswith(("start", "companion"))]
    out, y = [], 30
    for row in rows:
        ours = row["seconds"]["qln-fp-cleaner"]
        out.append(f'<text x="{LEFT - 10}" y="{y + 12}" text-anchor="end">{row["work"]}</text>')
        for name, seconds in row["seconds"].items():
            if name == "qln-fp-cleaner":
                continue
            ratio = seconds / ours
            length = max(2, math.log10(max(ratio, 0.1) * 10) * 105)
            out.append(f'<rect x="{LEFT}" y="{y}" width="{length:.0f}" height="{BAR}" '
                       f'fill="{"#4878a8" if ratio >= 1 else "#b85450"}"/>')
            out.append(f'<text x="{LEFT + length + 6:.0f}" y="{y + 12}">{name} {ratio:.3g}</text>')
            y += BAR + 2
        y += GAP
    one = LEFT + 105
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{y + 10}" '
            'font-family="sans-serif" font-size="12">\n'
            f'<rect width="{WIDTH}" height="{y + 10}" fill="white"/>\n'
            f'<line x1="{one}" y1="22" x2="{one}" y2="{y}" stroke="#999"/>\n'
            f'<text x="{one}" y="16" text-anchor="middle">as fast as qln-fp-cleaner</text>\n'
            + "\n".join(out) + "\n</svg>\n")
