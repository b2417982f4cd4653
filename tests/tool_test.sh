#!/usr/bin/env bash
# Commands of the tool: results pixel by pixel, and bad input, which must cost one line, exit code 2 and no file.
#   usage: tests/tool_test.sh ZIMCC
set -uo pipefail

zimcc=$(realpath "$1")
sources=$(realpath "$(dirname "$0")/..")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
failures=0

fail() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
}

linked() { "$zimcc" list "$1" >/dev/null 2>&1; }

# The samples of a PNG of one row, in hexadecimal. Behind the header (41 bytes) and its own (2) its data is a plain
# deflate stream; gzip unpacks it and then misses its checksum. A leading 1 tells that samples are differences.
samples() {
  { printf '\x1f\x8b\x08\0\0\0\0\0\0\0'; tail -c +44 "$1"; } | gzip -dc 2>/dev/null | od -An -v -tu1 -w1 |
    awk 'NR == 1 { difference = $1; next } { last = difference ? (last + $1) % 256 : $1; printf "%02x", last }'
}

# expect NAME INPUT SAMPLES [SETTING...]
expect() {
  local name=$1 input=$2 expected=$3 actual
  linked "$name" || return 0
  rm -f out.png
  "$zimcc" run "$name" "$input" out.png "${@:4}" || fail "run ${*:1:2} ${*:4}"
  actual=$(samples out.png)
  [[ $actual == "$expected" ]] || fail "$name on $input ${*:4}: $actual, not $expected"
}

# refuse MESSAGE_PATTERN WORD...
refuse() {
  local before after code message
  before=$(find . | sort)
  message=$("$zimcc" "${@:2}" 2>&1 >/dev/null)
  code=$?
  after=$(find . | sort)
  [[ $code == 2 ]] || fail "exit code $code of ${*:2}"
  [[ $message =~ ^"zimcc: "[^$'\n']*$ && $message =~ $1 ]] || fail "${*:2} says: $message"
  [[ $before == "$after" ]] || fail "${*:2} leaves files: $after"
}

# One pixel of full red, of linear light at four times white, and 16 x 16 pixels of many values.
printf 'PF\n1 1\n-1.0\n\x00\x00\x80\x3f\0\0\0\0\0\0\0\0' >red.pfm
printf 'Pf\n1 1\n1.0\n\x40\x80\0\0' >bright.pfm
{
  printf 'PF 16 16 -1\n'
  for byte in {1..6}{0..7}{{0..9},{a..f}}; do printf '%b' "\\x00\\x00\\x${byte:1}\\x3f"; done
} >many.pfm

identity=twist=1,0,0,0,0,1,0,0,0,0,1,0
expect zimiColorTwist32f_8u_C3R red.pfm ff0000 $identity
"$zimcc" run zimiColorTwist32f_8u_C3R red.pfm red.png $identity || fail "no red.png"
"$zimcc" run zimiRGBToGray_16u_C3C1R red.png gray.png || fail "no gray.png"

expect zimiRGBToGray_8u_C3C1R red.png 4c
expect zimiRGBToGray_8u_AC4C1R red.png 4c
expect zimiRGBToGray_16u_C3C1R red.png 4c8b
expect zimiRGBToGray_16s_C3C1R red.png 4c8b
expect zimiRGBToGray_32f_C3C1R red.png 4c8b
expect zimiRGBToGray_16u_C3C1R gray.png 4c8b
expect zimiColorToGray_8u_C3C1R red.png ff COEFFS=1,0,0
expect zimiColorToGray_8u_C3C1R red.png 00 coeffs=0,.5,.5
expect zimiColorToGray_8u_C3C1R red.png 4c coeffs=null
expect zimiColorTwist32f_8s_C3IR red.png ff0000 $identity
expect zimiColorTwist32f_16s_IP3R red.png ffff00000000 $identity
expect zimiColorTwist_32f_C4R red.png 0000ffff0000ffff twist=0,1,0,0,1,0,0,0,0,0,1,0,0,0,0,1
expect zimiRGBToYCbCr_8u_C3R red.png 52ffffffffffffffff5afffffffffffffffff0
expect zimiRGBToYCbCr_8u_C3P3R red.png 52ffffffffffffffff5afffffffffffffffff0
expect zimiBGRToYCoCg_Rev_8u16s_C3P3R red.png 3f3f"$(printf 'f%.0s' {1..32})"ffff"$(printf 'f%.0s' {1..32})"4040
expect zimiYCoCgToBGR_Rev_16s8u_P3C3R red.png ff0000
expect zimiYCoCgToBGR_Rev_16s8u_P3C4R red.png ff0000ff
expect zimiYCoCgToBGR_Rev_16s8u_P3C4R red.png ff000080 aval=128
expect zimiYCoCgToSBGR_Rev_32s16s_P3C3R red.png ffff00000000
expect zimiGammaFwd_8u_C3R red.png ff0000
expect zimiGammaInv_32f_C3R red.png ffff00000000 vmin=0 VMAX=1
expect zimiToneMapMean_32f8u_C1R bright.pfm 7f

# Raw video: two frames of one pixel, of which the first counts; planes at 16 x 16 and back.
printf '\xff\0\0abc' >red.yuv
expect zimiRGBToGray_8u_C3C1R red.yuv 4c size=1x1
if linked zimiRGBToYCbCr420_8u_C3P3R && linked zimiYCbCr420ToRGB_8u_P3C3R; then
  "$zimcc" run zimiRGBToYCbCr420_8u_C3P3R many.pfm planes.yuv || fail "no planes.yuv"
  [[ $(stat -c %s planes.yuv) == 384 ]] || fail "planes.yuv has the wrong size"
  "$zimcc" run zimiYCbCr420ToRGB_8u_P3C3R planes.yuv back.png size=16x16 || fail "no back.png"
  "$zimcc" run zimiYCbCr420ToRGB_8u_P3C3R many.pfm again.png || fail "no again.png"
  cmp back.png again.png || fail "raw planes give another picture"
fi

# A mosaic of one colour, 16 32 48, gives that colour everywhere, and back; as another grid it is another colour.
reds='\x10 \x10 \x10 ' blues=' \x30 \x30 \x30'
mosaic() { printf "P5\n$1%d 6\n$2\n" 6 && for row in 1 2 3; do printf "${reds// /$3}${blues// /$3}"; done; }
mosaic '# red first\n' 255 '\x20' >mosaic.pgm
mosaic '' 255 '\x20' >plain.pgm
mosaic '' 65535 '\x20\x20' | sed 's/\x10/\x10\x10/g; s/\x30/\x30\x30/g' >deep.pgm
for method in CFAToRGB DemosaicAHD; do
  name=zimi${method}_8u_C1C3R
  expect $name mosaic.pgm 102030 grid=RGGB roi=4,5,1,1
  expect $name mosaic.pgm 302010 grid=bggr roi=3,1,1,1
  expect zimi${method}_16u_C1C3R deep.pgm 101020203030 roi=2,2,1,1
  "$zimcc" run $name mosaic.pgm colours.png || fail "no colours.png by $name"
  "$zimcc" mosaic colours.png again.pgm && cmp -s again.pgm plain.pgm || fail "mosaic of colours.png by $name"
done
"$zimcc" mosaic deep.pgm again.pgm grid=GRBG && cmp -s again.pgm deep.pgm || fail "mosaic of a gray picture"

# Whatever is listed can be described and run.
names=$("$zimcc" list | cut -d ' ' -f 1)
for name in $names; do
  [[ $("$zimcc" describe "$name") == "$name"$'\n'*@(roiSize|srcSize)* ]] || fail "describe $name"
  "$zimcc" run "$name" many.pfm "$name.png" || fail "run $name"
  [[ -s $name.png ]] || fail "no picture of $name"
done
[[ $("$zimcc" list 'zimiRGBToGray_8u_*' | cut -d ' ' -f 1) == zimiRGBToGray_8u_AC4C1R$'\n'zimiRGBToGray_8u_C3C1R ]] ||
  fail "list with a pattern"
"$zimcc" version | grep -Eq '^target +(mx|v3|v4)$' || fail "version"
"$zimcc" --version | cmp -s - <("$zimcc" version) || fail "--version"
"$zimcc" --help | grep -q '^usage' || fail "help"
commands=$("$zimcc" complete '')
[[ $commands == *describe*run*bench* ]] || fail "complete: $commands"
for command in $commands; do
  [[ $("$zimcc" "$command" --help) == "usage: zimcc $command"*$'\n\n'* ]] || fail "$command --help"
  [[ $("$zimcc" --help) == *"  $command "* ]] || fail "help does not name $command"
  grep -q "^\.It Cm $command" "$sources/man/zimcc.1" || fail "the manual does not name $command"
done
"$zimcc" bench 'zimi*HSV_16u_C3R' --size 64x48 --threads 2 | tail -1 | grep -q '^1 conversion' || fail "bench with a pattern"
"$zimcc" bench zimiRGBToGray_8u_C3C1R --size 64x48 | grep -Eq 'median +[0-9.]+ +[0-9.]+ +[0-9.]+' || fail "bench"

"$zimcc" demo sheet/new >/dev/null || fail "demo"
[[ $(grep -o '<img' sheet/new/index.html | wc -l) == $(find sheet/new -name '*.png' | wc -l) ]] || fail "pictures on the page"

# completes EXPECTED WORD...: the words that may take the place of the last.
completes() {
  local found
  found=$("$zimcc" complete "${@:2}" | tr '\n' ' ')
  [[ $found == "$1 " ]] || fail "after ${*:2} comes $found"
}
completes 'zimiRGBToHSV_16u_AC4R zimiRGBToHSV_16u_C3R' describe RGBToHSV_16u
completes 'grid=GBRG grid=GRBG' run zimiCFAToRGB_8u_C1C3R in.pgm out.png grid=G
completes 'size= roi= grid=BGGR grid=RGGB grid=GBRG grid=GRBG' run zimiCFAToRGB_8u_C1C3R in.pgm out.png ''
[[ -z $("$zimcc" complete run zimiCFAToRGB_8u_C1C3R '') ]] || fail "files are for the shell to complete"

gray=zimiColorToGray_8u_C3C1R
head -c 60 red.png >cut.png
head -c 20 red.pfm >cut.pfm
echo text >text
refuse 'see zimcc --help'
refuse 'paint' paint
refuse 'did you mean bench' bnech
refuse 'did you mean zimiRGBToHLS_8u_C3R' describe zimirgbtohsl_8u_c3r
refuse 'see zimcc list ToHLS' describe ToHLS
refuse 'did you mean twist' run zimiColorTwist32f_8u_C3R red.png new.png twits=1
refuse 'usage: zimcc run' run $gray red.png
refuse 'zimiNothing' run zimiNothing red.png new.png
refuse 'zimiNothing' describe zimiNothing
refuse 'zimiNothing' list zimiNothing
refuse 'absent.png' run $gray absent.png new.png
refuse 'cut.png' run $gray cut.png new.png
refuse 'cut.pfm' run $gray cut.pfm new.png
refuse 'text as a PNG' run $gray text new.png
refuse 'levels' run $gray red.png new.png levels=2
refuse "form name=value" run $gray red.png new.png coeffs
refuse '3 numbers, not 2' run $gray red.png new.png coeffs=1,2
refuse "'x'" run $gray red.png new.png coeffs=1,x,2
refuse 'needs its size' run $gray red.yuv new.png
refuse 'frames of 4 x 1' run $gray red.yuv new.png size=4x1
refuse 'cannot write .*nowhere' run $gray red.png nowhere/new.png
refuse 'cannot write sheet' run $gray red.png sheet
refuse '0x5' bench $gray --size 0x5
refuse '5y5' bench $gray --size 5y5
refuse 'threads' bench $gray --threads 0
refuse 'red.png' demo red.png
head -c 30 mosaic.pgm >cut.pgm
averages=zimiCFAToRGB_8u_C1C3R
refuse 'cut.pgm' run $averages cut.pgm new.png
refuse 'outside the picture of 6 x 6' run $averages mosaic.pgm new.png roi=5,0,2,1
refuse "'GBGB'" run $averages mosaic.pgm new.png grid=GBGB
refuse 'has none of its values' run $averages mosaic.pgm new.png grid=4
refuse 'too small' run zimiDemosaicAHD_8u_C1C3R red.pfm new.png
refuse 'usage: zimcc mosaic' mosaic red.png
linked zimiYCoCgToBGR_16s8u_P3C4R && refuse "'300'" run zimiYCoCgToBGR_16s8u_P3C4R red.png new.png aval=300
linked zimiGammaFwd_32f_C3R && refuse 'vMax must be above' run zimiGammaFwd_32f_C3R red.png new.png vMin=1

linked zimiReduceBits_8u_C1R && refuse 'levels is out of range' run zimiReduceBits_8u_C1R red.png new.png levels=1
linked zimiReduceBits_8u_C1R && refuse 'noise is out of range' run zimiReduceBits_8u_C1R red.png new.png noise=101
linked zimiReduceBits_8u1u_C1R && refuse 'kind of dither' run zimiReduceBits_8u1u_C1R red.png new.png dither=1

((failures == 0)) || exit 1
