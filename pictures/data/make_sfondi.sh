#!/bin/sh
# Makes the textures and backgrounds of the text designer (ImageMagick).
# Run from this folder; the PNGs are committed, so a build does not need it.
# Every random pattern has a fixed seed, so a second run gives the same files.
set -e
mkdir -p sfondi
cd sfondi
S=128x128
# Paper: a warm white with a faint grain.
convert -seed 11 -size $S xc:'#f3ead6' -attenuate 0.25 +noise Gaussian -blur 0x0.6 \
  -colors 48 carta.png
# Marble: light stone with thin grey veins bent by a fractal cloud.
convert -seed 12 -size $S plasma:fractal -colorspace Gray -blur 0x3 -auto-level \
  -fx 'pow(abs(sin(u*14+i/w*5)),0.35)' +level-colors '#6d6a72','#f4f1ec' -colors 48 marmo.png
# Wood: growth rings along the plank, bent by a soft cloud.
convert -seed 13 -size $S plasma:fractal -colorspace Gray -blur 0x6 -auto-level \
  -fx '0.5+0.5*sin(j*0.45+u*9)' -motion-blur 0x4+0 \
  +level-colors '#7a4a22','#c98f55' -colors 48 legno.png
# Fabric: a fine weave of two threads.
convert -size 8x8 xc:'#4b6e9e' -fill '#6f93c4' -draw 'rectangle 0,0 3,3' -draw 'rectangle 4,4 7,7' \
  -write mpr:weave +delete -size $S tile:mpr:weave -attenuate 0.15 -seed 14 +noise Uniform \
  -colors 32 tessuto.png
# Stone: a coarse grey cloud.
convert -seed 15 -size $S plasma:grey60-grey30 -colorspace Gray -blur 0x0.8 \
  -attenuate 0.3 +noise Laplacian -colors 32 pietra.png
# Bricks: the brick pattern in red with light mortar.
convert -size $S pattern:bricks -scale 200% -crop $S+0+0 +repage \
  +level-colors '#a23b2a','#d8d0c0' -colors 8 mattoni.png
# Sky: light clouds over a blue gradient.
convert -seed 16 -size $S gradient:'#2f6fbf'-'#bcd9f5' \
  \( -size $S plasma:white-grey50 -colorspace Gray -blur 0x3 \) -compose Screen -composite \
  -colors 64 cielo.png
# Grass: green noise, short strokes upward.
convert -seed 17 -size $S xc: +noise Random -colorspace Gray -motion-blur 0x6+90 -auto-level \
  +level-colors '#1f5a1a','#8cc45a' -colors 48 erba.png
# Gradients for a background that has to stay quiet.
convert -size 256x128 gradient:'#fdfbe3'-'#f0a35e' -rotate 90 -resize 128x128! -colors 64 tramonto.png
convert -size 128x128 radial-gradient:'#ffffff'-'#7aa7d6' -colors 64 alone-azzurro.png
convert -size 128x128 gradient:'#d7d7d7'-'#6b6b6b' -colors 64 acciaio.png
# Gold: a warm metallic sheen.
convert -seed 18 -size $S plasma:fractal -colorspace Gray -blur 0x5 -auto-level \
  +level-colors '#8a6508','#ffe680' -colors 48 oro.png
