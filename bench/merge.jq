# The merge of raw reports in jq, on the records of all of them as one stream (jq -n).
reduce inputs as $one ({};
  .[$one.path] |= if . == null then $one
                  else .lines |= map(select(. as $line | any($one.lines[]; . == $line))) end)
| {files: [.[] | select(.lines != []) | {hash, lines, path}], version: 1}
